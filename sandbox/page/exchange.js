// One exchange: what was asked and answered, and in what the two sides differ.
import {get} from "./api.js";
import {element, facts, table} from "./dom.js";
import {milliseconds, operationText, outcomeClass, timeText} from "./exchanges.js";
import {xmlView} from "./xml.js";

function message(title, first, part) {
  const cut = part.cut ? element("p", {class: "odd"}, `The beginning of ${part.size} bytes.`) : null;
  return element("section", {"aria-label": title},
    element("h2", {}, title),
    element("pre", {tabindex: "0", role: "region", "aria-label": `${title}: headers`},
      `${first}\n${part.headers.trim()}`),
    part.body ? xmlView(`${title}: body`, part.body) : element("p", {class: "soft"}, "No body."),
    cut);
}

function differences(exchange) {
  if (exchange.differences.length === 0) {
    return element("p", {class: "good"}, "The request is as the library sends it.");
  }
  return table("In what the request differs from what the library sends",
    ["Where", "Found", "Expected"],
    exchange.differences.map((each) =>
      [["text", each.at], ["text bad", each.found], ["text good", each.expected]]));
}

export async function showExchange(place, number) {
  place.append(element("h1", {}, `Exchange ${number}`));
  const exchange = await get(`/admin/journal/${encodeURIComponent(number)}`);
  const values = Object.entries(exchange.arguments);
  place.append(
    facts([
      ["Operation", operationText(exchange)],
      ["Outcome", element("span", {class: outcomeClass(exchange.outcome)}, exchange.outcome)],
      ["Answered by", exchange.answeredBy],
      ["Remark", exchange.remark],
      ["Time (UTC)", `${exchange.at.slice(0, 10)} ${timeText(exchange.at)}, ${milliseconds(exchange.micros)}`],
      ["Route", exchange.route],
      ["Session", exchange.session],
    ]),
    element("h2", {}, "Expected and found"),
    differences(exchange),
    element("h2", {}, "Arguments"),
    values.length === 0 ? element("p", {class: "soft"}, "None.")
      : table("By their names in the interface", ["Name", "Value"],
        values.map(([name, value]) => [name, ["text", value]]), {stacked: false}),
    element("div", {class: "sides"},
      message("Request", `${exchange.request.method} ${exchange.request.target}`, exchange.request),
      message("Reply", `${exchange.reply.status}`, exchange.reply)),
    element("p", {}, element("a", {href: "#/exchanges"}, "All exchanges")));
  return null;
}
