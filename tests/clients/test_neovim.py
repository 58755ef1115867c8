"""Neovim's built-in client, headless, with the settings that docs/editors.md shows."""
import re
import subprocess
import unittest

from Command import COMMAND, HANG, SOURCE, CommandTest, environment


class NeovimTest(CommandTest):
    def settings(self):
        """The file with the settings of the page, for this program and snapshot."""
        page = (SOURCE / "docs/editors.md").read_text(encoding="utf-8")
        text = re.search(r"```lua\n(.*?)```", page, re.DOTALL)[1]
        file = self.folder / "settings.lua"
        # On a slow machine the usual limit would cut answers short.
        file.write_text(text.replace('"contextdata", "serve"', f'"{COMMAND}", "serve"')
                        .replace('name = "contextdata",', 'name = "contextdata", init_options = {timeout = 0},')
                        .replace("session.json", self.session), encoding="utf-8")
        return str(file)

    def test_neovim(self):
        code = self.folder / "code.k"
        code.write_text("x = 1;\ny = )\n", encoding="utf-8")
        done = subprocess.run(
            ["nvim", "--headless", "-u", "NONE", "-i", "NONE", "-n", "-c", f"luafile {self.settings()}", "-c", f"edit {code}",
             "-c", f"luafile {SOURCE}/tests/clients/neovim.lua"],
            env={**environment(), "CONTEXTDATA_SNAPSHOT": self.session, "HOME": str(self.folder),
                 "XDG_STATE_HOME": str(self.folder), "XDG_CACHE_HOME": str(self.folder), "XDG_DATA_HOME": str(self.folder)},
            capture_output=True, text=True, timeout=HANG, stdin=subprocess.DEVNULL, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
