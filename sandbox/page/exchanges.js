// The list of the exchanges, the latest above, as they come.
import {allOperations, follow, remove} from "./api.js";
import {choice, element, field, fill, moveByArrows, tell} from "./dom.js";

// More rows than anybody reads, and few enough for any browser.
const kMostRows = 500;
// So often at most a reader is told that there is something new.
const kNews_ms = 5000;

const kClasses = {answered: "good", warned: "odd", injected: "odd"};
const kOutcomes = ["answered", "warned", "fault", "refused", "failed", "injected"];

export function outcomeClass(outcome) {
  return kClasses[outcome] ?? "bad";
}

export function operationText(exchange) {
  if (exchange.operations.length > 0) return exchange.operations.join(" or ");
  return exchange.method ? `${exchange.method} in ${exchange.service}` : "(unreadable)";
}

export function timeText(moment) {
  return moment.slice(11, 23);
}

export function milliseconds(micros) {
  return `${(micros / 1000).toFixed(1)} ms`;
}

function argumentsText(exchange) {
  return Object.entries(exchange.arguments).map(([name, value]) => `${name}=${value}`).join(" ");
}

function rowOf(exchange) {
  const cell = (name, ...children) => element("td", name ? {class: name} : {}, children);
  return element("tr", {"data-id": exchange.id},
    cell("number", element("a", {href: `#/exchange/${exchange.id}`}, `${exchange.id}`)),
    cell("number", timeText(exchange.at)),
    cell("", exchange.route),
    cell("text", operationText(exchange)),
    cell(outcomeClass(exchange.outcome), exchange.outcome,
      exchange.answeredBy ? ` by ${exchange.answeredBy}` : ""),
    cell("number", `${exchange.status}`),
    cell("number", milliseconds(exchange.micros)),
    cell("text", exchange.remark ?? argumentsText(exchange)));
}

/// What the form asks for, as a query.
function queryOf(form) {
  const query = new URLSearchParams();
  for (const [name, value] of new FormData(form)) {
    if (value.trim() !== "") query.append(name, value.trim());
  }
  return query.size > 0 ? `?${query}` : "";
}

function filterForm() {
  const names = element("datalist", {id: "operation-names"});
  allOperations().then((all) => names.append(...all.map(
    (each) => element("option", {value: each.operation})))).catch(() => {});
  const any = (list) => [["", "any"], ...list.map((each) => [each, each])];
  return element("form", {class: "row", "aria-label": "Which exchanges"},
    field("Operation", element("input", {name: "operation", list: "operation-names", size: 32,
      placeholder: "BVInvoiceConnector.*"})),
    field("Route", choice(any(["soap", "dal"]), "", {name: "route"})),
    field("Outcome", choice(any(kOutcomes), "", {name: "outcome"})),
    field("Argument", element("input", {name: "where", size: 24, placeholder: "strInvoiceUID=INV-1001"})),
    element("button", {}, "Show these"), names);
}

/// Tells now and then how many there were, and not each by itself.
function newsTeller() {
  let count = 0;
  let timer = null;
  return {
    add(more) {
      count += more;
      timer ??= setTimeout(() => {
        tell(count === 1 ? "One more exchange" : `${count} more exchanges`);
        count = 0;
        timer = null;
      }, kNews_ms);
    },
    end: () => clearTimeout(timer),
  };
}

export function showExchanges(place) {
  const form = filterForm();
  const alert = element("p", {role: "alert"});
  const summary = element("p", {class: "soft"}, "Nothing yet. Exchanges stand here as soon as they are made.");
  const body = element("tbody");
  const pause = element("button", {type: "button", "aria-pressed": "false"}, "Hold");
  const forget = element("button", {type: "button"}, "Forget all");
  const connection = document.getElementById("connection");
  const news = newsTeller();
  let stop = null;
  let held = null;
  let leftOut = 0;
  let heard = false;

  function sum() {
    const shown = body.rows.length;
    const parts = [`${shown} ${shown === 1 ? "exchange" : "exchanges"}`];
    if (shown === kMostRows) parts.push("the latest");
    if (leftOut > 0) parts.push(`${leftOut} left out, since they were too many at once`);
    summary.textContent = parts.join("; ");
  }

  function take(events) {
    const rows = [];
    for (const event of events) {
      const data = JSON.parse(event.data);
      if (event.name === "exchange") rows.unshift(rowOf(data));
      if (event.name === "leftOut") leftOut += data.count;
      if (event.name === "begin" && !data.goesOn) {
        fill(body);
        leftOut = 0;
      }
    }
    // Whoever has walked into the list stays at the same row.
    const focused = document.activeElement;
    const top = focused && body.contains(focused) ? focused.getBoundingClientRect().top : null;
    body.prepend(...rows);
    while (body.rows.length > kMostRows && !body.lastChild.contains(focused)) body.lastChild.remove();
    if (top !== null) scrollBy(0, focused.getBoundingClientRect().top - top);
    if (rows.length > 0 && heard) news.add(rows.length);
    heard = true;
    sum();
  }

  function state(text) {
    connection.textContent = {connected: "live", lost: "connection lost, trying again"}[text] ?? "";
    alert.textContent = text === "connected" || text === "lost" ? "" : text;
  }

  function begin() {
    stop?.();
    fill(body);
    leftOut = 0;
    heard = false;
    stop = follow(`/admin/journal/events${queryOf(form)}`,
      (events) => held ? held.push(...events) : take(events), state);
  }

  form.addEventListener("submit", (event) => {
    event.preventDefault();
    begin();
  });
  pause.addEventListener("click", () => {
    const events = held;
    held = held ? null : [];
    pause.setAttribute("aria-pressed", String(held !== null));
    if (events) take(events.slice(-2 * kMostRows));
  });
  forget.addEventListener("click", async () => {
    await remove("/admin/journal").catch((error) => { alert.textContent = error.message; });
    fill(body);
    sum();
  });
  body.addEventListener("keydown", (event) => moveByArrows(event, [...body.querySelectorAll("a")]));

  const heads = ["Number", "Time (UTC)", "Route", "Operation", "Outcome", "Status", "Took", "Arguments or remark"];
  place.append(element("h1", {}, "Exchanges"), form, alert,
    element("p", {}, pause, " ", forget), summary,
    element("div", {class: "wide"}, element("table", {class: "stacked"},
      element("caption", {class: "unseen"}, "Exchanges, the latest above"),
      element("thead", {}, element("tr", {}, heads.map((each) => element("th", {scope: "col"}, each)))),
      body)));
  begin();
  return () => {
    stop();
    news.end();
    connection.textContent = "";
  };
}
