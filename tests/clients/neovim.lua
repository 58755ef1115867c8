-- Drives Neovim's own client: the settings of docs/editors.md (CONTEXTDATA_SETTINGS) have been read, CONTEXTDATA_SNAPSHOT is the file
-- that the server works on. Everything is typed, or asked as the editor's commands ask it. Ends with exit code 0, or tells what went wrong.

local snapshot = os.getenv("CONTEXTDATA_SNAPSHOT")
local hang = 600000 -- milliseconds: nothing takes that long on any machine

local function finish(problem)
  if problem then io.stderr:write(problem .. "\n") end
  vim.cmd(problem and "cquit 1" or "qall!")
end

-- Goes on when the condition is true. The editor works meanwhile.
local function wait_until(what, condition)
  local steps = hang / 20
  while not condition() do
    steps = steps - 1
    if steps == 0 then error("waited in vain until " .. what) end
    local this = coroutine.running()
    vim.defer_fn(function()
      local went_on, problem = coroutine.resume(this)
      if not went_on then finish(problem) end
    end, 20)
    coroutine.yield()
  end
end

local function diagnostics_at(uri) return vim.diagnostic.get(vim.uri_to_bufnr(uri)) end

local function type_keys(keys) vim.api.nvim_input(keys) end

local function words_offered()
  local words = {}
  for _, item in ipairs(vim.fn.complete_info({"items"}).items) do table.insert(words, item.word) end
  return table.concat(words, " ")
end

local function text_of_windows()
  local lines = {}
  for _, window in ipairs(vim.api.nvim_list_wins()) do
    vim.list_extend(lines, vim.api.nvim_buf_get_lines(vim.api.nvim_win_get_buf(window), 0, -1, false))
  end
  return table.concat(lines, "\n")
end

local function write_snapshot(text)
  local file = assert(io.open(snapshot, "w"))
  file:write(text)
  file:close()
end

local function check(what, given, wanted)
  if given ~= wanted then
    error(what .. ": " .. vim.inspect(given) .. " instead of " .. vim.inspect(wanted))
  end
end

local function test()
  local here = vim.uri_from_bufnr(0)
  wait_until("the broken line is marked", function() return #diagnostics_at(here) == 1 end)
  local mark = diagnostics_at(here)[1]
  check("line", mark.lnum, 1)
  check("column", mark.col, 4)
  check("source", mark.source, "contextdata")

  type_keys("ggdGipump.F<Esc>")
  wait_until("nothing is marked", function() return #diagnostics_at(here) == 0 end)
  type_keys("A<C-x><C-o>")
  wait_until("candidates are shown", function() return vim.fn.pumvisible() == 1 end)
  check("candidates", words_offered(), "Flow")
  type_keys("<C-n><C-y><Esc>")
  wait_until("the candidate is taken", function() return vim.api.nvim_get_current_line() == "pump.Flow" end)

  vim.lsp.buf.hover()
  wait_until("the name is described", function() return text_of_windows():find("property of lab.Pump", 1, true) end)

  write_snapshot('{"format": 1, "workspace": [{"name": "fresh", "value": 1}]')
  wait_until("the snapshot is marked", function() return #diagnostics_at(vim.uri_from_fname(snapshot)) == 1 end)
  write_snapshot('{"format": 1, "workspace": [{"name": "fresh", "value": 1}]}')
  wait_until("the snapshot is good", function() return #diagnostics_at(vim.uri_from_fname(snapshot)) == 0 end)
  type_keys("ccfr<C-x><C-o>")
  wait_until("candidates are shown", function() return vim.fn.pumvisible() == 1 end)
  check("candidates", words_offered(), "fresh")
  type_keys("<C-e><Esc>")

  vim.lsp.stop_client(vim.lsp.get_active_clients())
  wait_until("the server has ended", function() return #vim.lsp.get_active_clients() == 0 end)
  finish()
end

vim.o.completeopt = "menu,menuone,noselect,noinsert"
local went, problem = coroutine.resume(coroutine.create(test))
if not went then finish(problem) end
