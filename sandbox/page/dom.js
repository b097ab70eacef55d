// Elements and the texts in them. What comes from the sandbox becomes a text node and nothing else.

/// element("a", {href: "#/faults", class: "x", onclick: f}, "text", other, [more])
export function element(name, properties = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(properties)) {
    if (value === undefined || value === null || value === false) continue;
    if (key.startsWith("on")) {
      made.addEventListener(key.slice(2), value);
    } else if (key === "value") {
      made.value = value;
    } else {
      made.setAttribute(key, value === true ? "" : value);
    }
  }
  made.append(...children.flat(Infinity).filter((each) => each !== null && each !== undefined));
  return made;
}

let numbers = 0;

/// A control under its label; the note tells more of it.
export function field(label, control, {note, broad} = {}) {
  numbers += 1;
  control.id = control.id || `field-${numbers}`;
  const parts = [element("label", {for: control.id}, label), control];
  if (note) {
    parts.push(element("small", {id: `${control.id}-note`}, note));
    control.setAttribute("aria-describedby", `${control.id}-note`);
  }
  return element("div", {class: broad ? "field broad" : "field"}, parts);
}

export function choice(options, value, properties = {}) {
  const select = element("select", properties, options.map(([key, text]) =>
    element("option", {value: key}, text)));
  select.value = value;
  return select;
}

/// A table whose rows are arrays of cells: texts, elements, or [class, text or element].
export function table(caption, heads, rows, {stacked = true} = {}) {
  const cell = (each) => Array.isArray(each) ? element("td", {class: each[0]}, each[1])
                                             : element("td", {}, each);
  return element("div", {class: "wide"}, element("table", {class: stacked ? "stacked" : null},
    element("caption", {}, caption),
    element("thead", {}, element("tr", {}, heads.map((each) => element("th", {scope: "col"}, each)))),
    element("tbody", {}, rows.map((row) => element("tr", {}, row.map(cell))))));
}

export function facts(pairs) {
  return element("dl", {}, pairs.filter(([, value]) => value !== undefined && value !== "")
    .map(([name, value]) => [element("dt", {}, name), element("dd", {}, value)]));
}

/// Puts something in the place of all that a parent holds.
export function fill(parent, ...children) {
  parent.replaceChildren(...children.flat(Infinity).filter((each) => each !== null));
}

/// A person with a reader hears it, when there is a pause.
export function tell(text) {
  document.getElementById("news").textContent = text;
}

/// Up and down, Home and End move along the links, with any other key all stays as it is.
export function moveByArrows(event, links) {
  const steps = {ArrowDown: 1, ArrowUp: -1, Home: -Infinity, End: Infinity};
  const step = steps[event.key];
  const at = links.indexOf(document.activeElement);
  if (step === undefined || at < 0 || event.altKey || event.ctrlKey || event.metaKey) return;
  event.preventDefault();
  links[Math.max(0, Math.min(links.length - 1, at + step))].focus();
}
