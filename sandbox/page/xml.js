// XML for people: indented, with its tags in a colour. What is no XML stays what it is.
import {element} from "./dom.js";

const kMostIndented = 300000;
const kMostColoured = 4000;
const kWidest = 40;

/// Tags, and what stands between them.
function parts(text) {
  return text.match(/<[^>]*>|[^<]+|</g) ?? [];
}

export function indented(text) {
  if (text.length > kMostIndented || !text.trimStart().startsWith("<")) return text;
  let depth = 0;
  let out = "";
  let before = "";
  for (const part of parts(text)) {
    const isTag = part.startsWith("<");
    if (!isTag && part.trim() === "") continue;
    const closes = part.startsWith("</");
    const opens = isTag && !closes && !part.endsWith("/>") && !/^<[?!]/.test(part);
    if (closes) depth -= 1;
    // A text, and the tags around it, stay on one line.
    const joins = !isTag || before === "text" || (closes && before === "open");
    if (out && !joins) out += `\n${"  ".repeat(Math.max(0, Math.min(depth, kWidest)))}`;
    out += part;
    if (opens) depth += 1;
    before = !isTag ? "text" : opens ? "open" : "other";
  }
  return out;
}

function coloured(text) {
  const all = parts(text);
  if (all.length > kMostColoured) return [text];
  return all.map((part) => part.length > 1 && part.startsWith("<")
    ? element("span", {class: "tag"}, part) : part);
}

/// A text that can be scrolled by keys, and be seen as it was sent.
export function xmlView(label, text) {
  const view = element("pre", {tabindex: "0", role: "region", "aria-label": label});
  const pretty = indented(text);
  const show = (shown) => view.replaceChildren(...coloured(shown));
  show(pretty);
  if (pretty === text) return [view];
  const button = element("button", {type: "button", "aria-pressed": "false", onclick: () => {
    const raw = button.getAttribute("aria-pressed") === "false";
    button.setAttribute("aria-pressed", String(raw));
    show(raw ? text : pretty);
  }}, "As sent");
  return [button, view];
}
