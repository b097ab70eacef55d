// A form for each operation, made from the interface.
import {allOperations, post} from "./api.js";
import {choice, element, facts, field, fill, moveByArrows} from "./dom.js";
import {milliseconds} from "./exchanges.js";
import {xmlView} from "./xml.js";

// The sandbox fills it with its own address.
const kServer = "aServerURL";
const kUsual = {aSessionID: "PAGE"};

export async function showCalls(place) {
  const all = await allOperations();
  const filter = element("input", {type: "search", size: 32, autocomplete: "off"});
  const count = element("p", {class: "soft", role: "status"});
  const list = element("ul", {class: "plain columns"});
  const links = all.map((each) => element("li", {},
    element("a", {href: `#/call/${each.operation}`}, each.operation)));
  const narrow = () => {
    const words = filter.value.toLowerCase().split(/\s+/);
    const left = links.filter((each) => words.every((word) => each.textContent.toLowerCase().includes(word)));
    fill(list, left);
    count.textContent = `${left.length} of ${all.length} operations`;
  };
  filter.addEventListener("input", narrow);
  filter.addEventListener("keydown", (event) => {
    if (event.key !== "ArrowDown" && event.key !== "Enter") return;
    event.preventDefault();
    const first = list.querySelector("a");
    if (event.key === "Enter") first?.click();
    else first?.focus();
  });
  list.addEventListener("keydown", (event) => moveByArrows(event, [...list.querySelectorAll("a")]));
  place.append(element("h1", {}, "Calls"), element("div", {class: "row"}, field("Find an operation", filter)),
    count, list);
  narrow();
  return null;
}

/// A control for an argument, and how its value is read: undefined leaves the argument out.
function argumentControl(argument) {
  const properties = {name: argument.name, autocomplete: "off"};
  const usual = argument.default ?? kUsual[argument.name] ?? "";
  switch (argument.type) {
    case "boolean": {
      const select = choice([["false", "false"], ["true", "true"]], String(usual === true), properties);
      return [select, () => select.value === "true"];
    }
    case "int16":
    case "int32": {
      const input = element("input", {...properties, type: "number", step: "1", value: usual === "" ? "0" : usual});
      return [input, () => Number(input.value)];
    }
    case "string[]": {
      const area = element("textarea", {...properties, rows: "3", spellcheck: "false"});
      return [area, () => area.value === "" ? [] : area.value.split("\n"), "a line for each text"];
    }
    case "SoapNode": {
      const area = element("textarea", {...properties, rows: "5", spellcheck: "false"});
      return [area, () => area.value, "XML; an empty reference without any"];
    }
    case "variant": {
      const input = element("input", {...properties, value: usual});
      const read = () => input.value !== "" ? input.value : argument.optional ? undefined : "";
      return [input, read, argument.optional ? "a text; left out without one" : "a text"];
    }
    default: {
      const area = element("textarea", {...properties, rows: "1", spellcheck: "false", value: usual});
      return [area, () => area.value];
    }
  }
}

function argumentField(argument, readers) {
  const given = argument.optional ? "may be left out" : "";
  const label = [argument.name, " ", element("span", {class: "soft"}, argument.type)];
  if (argument.name === kServer) {
    return field(label, element("input", {value: `${location.origin}/soap`, readonly: true}),
      {note: "this sandbox's own"});
  }
  if (argument.type === "XMLDocument") {
    return field(label, element("input", {value: "(made for the call)", readonly: true}),
      {note: "the operation fills it"});
  }
  const [control, read, note] = argumentControl(argument);
  readers.set(argument.name, read);
  return field(label, control, {note: [given, note].filter((each) => each).join("; ") || null,
    broad: argument.type === "SoapNode"});
}

function routeChoice(operation, dal) {
  const names = {soap: "SOAP", dal: "data access layer"};
  const radio = (route) => element("label", {}, element("input", {type: "radio", name: "route", value: route,
    checked: route === operation.routes[0], onchange: () => { dal.hidden = route !== "dal"; }}), ` ${names[route]}`);
  return element("fieldset", {}, element("legend", {}, "Route"),
    element("div", {class: "choices"}, operation.routes.map(radio)), dal);
}

function valueView(value) {
  if (value.type === "none") return [element("p", {}, "It gives no result.")];
  const cut = value.cut ? element("p", {class: "odd"}, `The beginning of ${value.size} bytes.`) : null;
  if (value.xml !== undefined) return [...xmlView("Result", value.xml), cut];
  if (value.value === undefined) return [element("p", {}, "An empty reference.")];
  const text = typeof value.value === "string" ? value.value : JSON.stringify(value.value);
  return [element("p", {class: "soft"}, value.type), ...xmlView("Result", text), cut];
}

function answerView(answer) {
  const head = element("h2", {tabindex: "-1", id: "answer"},
    `${answer.error ? "Error" : "Result"} after ${milliseconds(answer.micros)}`);
  const parts = [head];
  if (answer.result) parts.push(...valueView(answer.result));
  if (answer.error) {
    parts.push(facts([
      ["Number", answer.error.hex ? element("span", {class: "bad"}, `${answer.error.hex} (${answer.error.number})`) : ""],
      ["Source", answer.error.source],
      ["Description", answer.error.description || "(none)"],
      ["Outcome", answer.error.outcome],
      ["What helps", answer.error.advice],
    ]));
  }
  for (const [name, xml] of Object.entries(answer.documents ?? {})) {
    parts.push(element("h2", {}, name), ...xmlView(name, xml));
  }
  if (answer.events) parts.push(element("p", {}, `Events: ${answer.events.join(", ")}`));
  parts.push(element("p", {}, element("a", {href: "#/exchanges"}, "The exchanges")));
  return [head, parts.filter((each) => each !== null)];
}

export async function showCall(place, name) {
  place.append(element("h1", {}, name));
  const operation = (await allOperations()).find((each) => each.operation === name);
  if (!operation) throw new Error(`There is no operation ${name}`);
  const readers = new Map();
  const user = element("input", {value: "PAGE", autocomplete: "off"});
  const password = element("input", {type: "password", value: "page", autocomplete: "off"});
  const dal = element("div", {class: "fields", hidden: operation.routes[0] !== "dal"},
    field("User", user), field("Password", password));
  const alert = element("p", {role: "alert"});
  const answer = element("section", {"aria-label": "What came back"});
  const button = element("button", {class: "main"}, "Call");
  const form = element("form", {"aria-label": `Call ${name}`},
    routeChoice(operation, dal),
    element("fieldset", {}, element("legend", {}, `Arguments; it gives ${operation.result}`),
      element("div", {class: "fields"}, operation.arguments.map((each) => argumentField(each, readers)))),
    alert, button);

  function asked() {
    const values = {};
    for (const [argument, read] of readers) {
      const value = read();
      if (value !== undefined) values[argument] = value;
    }
    const route = new FormData(form).get("route");
    const login = route === "dal" ? {user: user.value, password: password.value} : {};
    return {operation: name, route, arguments: values, ...login};
  }

  form.addEventListener("submit", async (event) => {
    event.preventDefault();
    alert.textContent = "";
    fill(answer, element("p", {role: "status"}, "Calling ..."));
    button.disabled = true;
    try {
      const [head, parts] = answerView(await post("/admin/calls", asked()));
      fill(answer, parts);
      head.focus();
    } catch (error) {
      fill(answer);
      alert.textContent = error.message;
    } finally {
      button.disabled = false;
    }
  });
  // A text may have lines, but the key that ends one is rarer than the one that calls.
  form.addEventListener("keydown", (event) => {
    const isOneLine = event.target.matches("textarea[rows='1']");
    if (event.key !== "Enter" || event.shiftKey || !isOneLine) return;
    event.preventDefault();
    form.requestSubmit();
  });
  place.append(form, answer, element("p", {}, element("a", {href: "#/calls"}, "All operations")));
  return null;
}
