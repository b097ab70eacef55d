// The sandbox's own resources, and its events.

const kTokenKey = "bvsandbox-token";
const kRetry_ms = 1000;
// The sandbox says something every ten seconds at least.
const kSilence_ms = 25000;

export class Refusal extends Error {}

function headers(more = {}) {
  const token = sessionStorage.getItem(kTokenKey);
  return token ? {...more, Authorization: `Bearer ${token}`} : more;
}

const tokenForm = document.getElementById("token");
const tokenWaiters = [];

tokenForm.addEventListener("submit", (event) => {
  event.preventDefault();
  sessionStorage.setItem(kTokenKey, document.getElementById("token-text").value.trim());
  tokenForm.hidden = true;
  tokenWaiters.splice(0).forEach((go) => go());
});

/// Ends when there is another token to try.
function askForToken() {
  if (tokenForm.hidden) {
    tokenForm.hidden = false;
    const isRefused = sessionStorage.getItem(kTokenKey) !== null;
    document.getElementById("token-refused").textContent =
      isRefused ? "The sandbox does not take this token." : "";
    document.getElementById("token-text").select();
  }
  return new Promise((done) => tokenWaiters.push(done));
}

async function send(path, options = {}) {
  for (;;) {
    const tried = sessionStorage.getItem(kTokenKey);
    const reply = await fetch(path, {...options, headers: headers(options.headers)});
    if (reply.status !== 401) return reply;
    // Another request may have asked for one meanwhile.
    if (sessionStorage.getItem(kTokenKey) === tried) await askForToken();
  }
}

async function answer(reply) {
  const text = await reply.text();
  if (!reply.ok) throw new Refusal(text.trim() || `The sandbox answered ${reply.status}`);
  return text;
}

export async function get(path) {
  return JSON.parse(await answer(await send(path)));
}

export async function post(path, value) {
  const body = JSON.stringify(value);
  return JSON.parse(await answer(await send(path, {method: "POST", body})));
}

export async function remove(path) {
  await answer(await send(path, {method: "DELETE"}));
}

/// One event of a stream, or null for a comment.
function eventOf(block) {
  const event = {name: "message", id: null, data: ""};
  for (const line of block.split("\n")) {
    const colon = line.indexOf(":");
    const name = line.slice(0, colon);
    const value = line.slice(colon + 1).trimStart();
    if (name === "event") event.name = value;
    if (name === "id") event.id = value;
    if (name === "data") event.data += value;
  }
  return event.data ? event : null;
}

/// Calls `onEvents` with what comes together, and `onState` with "connected", "lost" or a refusal's
/// words, until the function that it gives is called. A connection that is lost is made again and
/// goes on where it was. fetch and not EventSource, since that one sends no token.
export function follow(path, onEvents, onState) {
  const end = new AbortController();
  let last = null;

  async function read() {
    const silent = new AbortController();
    const stop = () => silent.abort();
    end.signal.addEventListener("abort", stop);
    let timer = setTimeout(stop, kSilence_ms);
    try {
      const reply = await send(path, {signal: silent.signal, headers: last ? {"Last-Event-ID": last} : {}});
      if (!reply.ok) throw new Refusal((await reply.text()).trim());
      onState("connected");
      const reader = reply.body.pipeThrough(new TextDecoderStream()).getReader();
      let pending = "";
      for (;;) {
        const {value, done} = await reader.read();
        if (done) return;
        clearTimeout(timer);
        timer = setTimeout(stop, kSilence_ms);
        const blocks = (pending + value).split("\n\n");
        pending = blocks.pop();
        const events = blocks.map(eventOf).filter((each) => each !== null);
        for (const each of events) last = each.id ?? last;
        if (events.length > 0 && !end.signal.aborted) onEvents(events);
      }
    } finally {
      clearTimeout(timer);
      end.signal.removeEventListener("abort", stop);
    }
  }

  async function run() {
    while (!end.signal.aborted) {
      try {
        await read();
        onState("lost");
      } catch (error) {
        if (end.signal.aborted) return;
        onState(error instanceof Refusal ? error.message : "lost");
      }
      await new Promise((done) => setTimeout(done, kRetry_ms));
    }
  }
  run();
  return () => end.abort();
}

let operations = null;

/// The operations that can be called, asked for once.
export function allOperations() {
  operations ??= get("/admin/operations").then((all) => all.operations).catch((error) => {
    operations = null;
    throw error;
  });
  return operations;
}
