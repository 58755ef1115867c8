"use strict";
// The server as VS Code's libraries see it: positions in both encodings, cancellation, what a request is answered with.
const assert = require("node:assert");
const {spawn} = require("node:child_process");
const fs = require("node:fs");
const os = require("node:os");
const path = require("node:path");
const {after, test} = require("node:test");
const lsp = require("vscode-languageserver-protocol/node");

const {CONTEXTDATA_COMMAND: command, CONTEXTDATA_SOURCE: source} = process.env;
const folder = fs.mkdtempSync(path.join(os.tmpdir(), "contextdata-"));
after(() => fs.rmSync(folder, {recursive: true}));

const session = path.join(folder, "session.json");
fs.writeFileSync(session, JSON.stringify({
  format: 1,
  classes: [{name: "C", properties: [{name: "endless", getter: "while true, end"}, "short"]}],
  workspace: [{name: "c", value: {object: "C"}}]
}));

/** Starts a server, does what is to be done with a connection to it, and ends it as the protocol wants. */
async function served(general, options, work) {
  const server = spawn(command, ["serve", "--snapshot", session], {stdio: ["pipe", "pipe", "inherit"]});
  const ended = new Promise((resolve) => server.once("exit", resolve));
  const connection = lsp.createProtocolConnection(new lsp.StreamMessageReader(server.stdout),
                                                  new lsp.StreamMessageWriter(server.stdin));
  const problems = [];
  connection.onError((error) => problems.push(error));
  connection.onUnhandledNotification(() => undefined);
  connection.listen();
  const {capabilities} = await connection.sendRequest(lsp.InitializeRequest.type, {
    processId: process.pid, rootUri: null, capabilities: {general}, initializationOptions: options, workspaceFolders: null});
  await connection.sendNotification(lsp.InitializedNotification.type, {});
  try {
    await work(connection, capabilities);
  } finally {
    await connection.sendRequest(lsp.ShutdownRequest.type);
    await connection.sendNotification(lsp.ExitNotification.type);
    assert.strictEqual(await ended, 0);
    connection.dispose();
  }
  assert.deepStrictEqual(problems, []);
}

function open(connection, uri, text) {
  return connection.sendNotification(lsp.DidOpenTextDocumentNotification.type,
                                     {textDocument: {uri, languageId: "korval", version: 1, text}});
}

function complete(connection, uri, line, character, token) {
  return connection.sendRequest(lsp.CompletionRequest.type, {textDocument: {uri}, position: {line, character}}, token);
}

const labels = (answer) => answer.items.map((item) => item.label);

for (const [encoding, before] of [["utf-16", 7], ["utf-8", 10]]) {
  test(`positions in ${encoding}`, () => served({positionEncodings: [encoding]}, {}, async (connection, capabilities) => {
    assert.strictEqual(capabilities.positionEncoding, encoding);
    const marks = new Promise((resolve) => connection.onNotification(lsp.PublishDiagnosticsNotification.type, resolve));
    await open(connection, "untitled:a", "'\u{1F600}\u00e4', c.sh");
    const position = before + "c.sh".length;
    const answer = await complete(connection, "untitled:a", 0, position);
    assert.deepStrictEqual(labels(answer), ["short"]);
    assert.deepStrictEqual(answer.items[0].textEdit.range.start, {line: 0, character: position - 2});
    assert.deepStrictEqual((await marks).diagnostics, []);

    const changed = new Promise((resolve) => connection.onNotification(lsp.PublishDiagnosticsNotification.type, resolve));
    await connection.sendNotification(lsp.DidChangeTextDocumentNotification.type, {
      textDocument: {uri: "untitled:a", version: 2},
      contentChanges: [{range: {start: {line: 0, character: 1}, end: {line: 0, character: before - 3}}, text: ""},
                       {range: {start: {line: 0, character: 3}, end: {line: 0, character: 3}}, text: ")\n\u20ac"}]});
    assert.deepStrictEqual((await changed).diagnostics[0].range.start, {line: 0, character: 3});
  }));
}

test("a running query is cancelled, and the next one is answered", () =>
  served({}, {code: "allowed", timeout: 0}, async (connection) => {
    await open(connection, "untitled:a", "c.endless.\nc.");
    for (const pause of [200, 20, 0]) {
      const cancellation = new lsp.CancellationTokenSource();
      const endless = complete(connection, "untitled:a", 0, 10, cancellation.token);
      const next = complete(connection, "untitled:a", 1, 2);
      setTimeout(() => cancellation.cancel(), pause);
      await assert.rejects(endless, (error) => error.code === lsp.LSPErrorCodes.RequestCancelled);
      assert.deepStrictEqual(labels(await next), ["endless", "short"]);
    }
  }));

test("what nobody knows", () => served({}, {}, async (connection) => {
  assert.deepStrictEqual(labels(await complete(connection, "untitled:unknown", 0, 0)), []);
  await assert.rejects(connection.sendRequest("textDocument/unknown", {}),
                       (error) => error.code === lsp.ErrorCodes.MethodNotFound);
  await open(connection, "untitled:a", "c.");
  const traced = await connection.sendRequest("contextdata/trace", {
    method: "textDocument/completion", params: {textDocument: {uri: "untitled:a"}, position: {line: 0, character: 2}}});
  assert.deepStrictEqual(labels(traced.result), ["endless", "short"]);
  assert.ok(traced.calls.length > 0 && !traced.ranCode);
}));
