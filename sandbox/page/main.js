// Which view is shown follows the part of the address behind "#", so each has a link and the
// browser's own way back.
import {element, fill, tell} from "./dom.js";
import {showCall, showCalls} from "./calls.js";
import {showDocument, showDocuments} from "./documents.js";
import {showExchange} from "./exchange.js";
import {showExchanges} from "./exchanges.js";
import {showFaults} from "./faults.js";

const kViews = [
  ["exchanges", "Exchanges", showExchanges],
  ["exchange", "Exchange", showExchange],
  ["documents", "Documents", showDocuments],
  ["document", "Document", showDocument],
  ["faults", "Faults", showFaults],
  ["calls", "Calls", showCalls],
  ["call", "Call", showCall],
];

const view = document.getElementById("view");
// What the present view has to end before another one is shown.
let leave = null;
let turn = 0;

function markLink(name) {
  for (const link of document.querySelectorAll("nav a")) {
    const target = link.getAttribute("href").slice(2);
    if (target === name || target === `${name}s`) {
      link.setAttribute("aria-current", "page");
    } else {
      link.removeAttribute("aria-current");
    }
  }
}

async function show(isFirst) {
  const [name, ...rest] = location.hash.slice(2).split("/");
  const [found, title, begin] = kViews.find(([each]) => each === name) ?? kViews[0];
  const subject = rest.map(decodeURIComponent).join("/");
  turn += 1;
  const own = turn;
  leave?.();
  leave = null;
  markLink(found);
  document.title = `${subject ? `${subject}: ` : ""}${title} - bvsandbox`;
  // A view fills a place of its own, so one that is late changes nothing that is shown by then.
  const place = element("div");
  fill(view, place);
  if (!isFirst) view.focus({preventScroll: true});
  scrollTo(0, 0);
  try {
    const end = await begin(place, subject);
    if (own === turn) {
      leave = end;
    } else {
      end?.();
    }
  } catch (error) {
    place.append(element("p", {role: "alert"}, error.message));
    tell(error.message);
  }
}

addEventListener("hashchange", () => {
  // The skip link leads to the view that is there.
  if (location.hash !== "#view") show(false);
});
show(true);
