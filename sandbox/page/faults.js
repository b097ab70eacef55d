// What was asked to go wrong, and a form to ask for more.
import {allOperations, get, post, remove} from "./api.js";
import {choice, element, field, fill, table, tell} from "./dom.js";

// How often calls were hit is looked up this often.
const kLook_ms = 2000;
const kCommon = ["name", "operation", "route", "session", "header", "skip", "count", "probability",
  "seed", "delay_ms", "run"];

function text(fault) {
  const left = ["name", "kind", "seen", "hit"];
  return Object.entries(fault).filter(([name]) => !left.includes(name))
    .map(([name, value]) => `${name}=${value}`).join(" ") || "every call";
}

/// The control for a field, which is left out of the fault while it is empty.
function control(one) {
  if (one.name === "route") return choice([["", "any"], ["soap", "soap"], ["dal", "dal"]], "", {name: one.name});
  if (one.name === "page") return choice([["", ""], ["html", "html"], ["empty", "empty"]], "", {name: one.name});
  if (one.type === "truth") return choice([["", ""], ["true", "true"], ["false", "false"]], "", {name: one.name});
  const number = one.type !== "text";
  return element("input", {name: one.name, type: "text", inputmode: number ? "decimal" : null,
    list: one.name === "operation" ? "operation-names" : null, autocomplete: "off"});
}

function valueOf(one, given) {
  if (one.type === "text") return given;
  if (one.type === "truth") return given === "true";
  const number = Number(given);
  if (given.trim() === "" || Number.isNaN(number)) throw new Error(`${one.name} is no number`);
  return number;
}

function addForm(kinds, fields, added) {
  const kind = choice(kinds.map((each) => [each.kind, each.kind]), kinds[0].kind, {name: "kind"});
  const summary = element("small", {id: "kind-summary"});
  kind.setAttribute("aria-describedby", "kind-summary");
  const own = element("div", {class: "fields"});
  const common = element("div", {class: "fields"});
  const names = element("datalist", {id: "operation-names"});
  const alert = element("p", {role: "alert"});
  const byName = new Map(fields.map((each) => [each.name, each]));
  const part = (name) => field(name, control(byName.get(name)), {note: byName.get(name).summary});
  allOperations().then((all) => names.append(...all.map(
    (each) => element("option", {value: each.operation})))).catch(() => {});

  function showKind() {
    const chosen = kinds.find((each) => each.kind === kind.value);
    summary.textContent = chosen.summary;
    fill(own, chosen.fields.filter((each) => !kCommon.includes(each)).map(part));
  }

  const form = element("form", {"aria-label": "A new fault"},
    element("fieldset", {}, element("legend", {}, "What goes wrong"),
      element("div", {class: "field"}, element("label", {for: "fault-kind"}, "kind"), kind, summary), own),
    element("fieldset", {}, element("legend", {}, "Which calls, and how often"), common),
    names, alert, element("button", {class: "main"}, "Add the fault"));
  kind.id = "fault-kind";
  kind.addEventListener("change", showKind);
  fill(common, kCommon.filter((each) => byName.has(each)).map(part));
  showKind();
  form.addEventListener("submit", async (event) => {
    event.preventDefault();
    alert.textContent = "";
    try {
      const fault = {};
      for (const [name, given] of new FormData(form)) {
        if (given === "") continue;
        fault[name] = name === "kind" ? given : valueOf(byName.get(name), given);
      }
      const {faults} = await post("/admin/faults", fault);
      tell(`The fault ${faults[0].name} is in force`);
      await added();
    } catch (error) {
      alert.textContent = error.message;
    }
  });
  return form;
}

export async function showFaults(place) {
  const list = element("div");
  const alert = element("p", {role: "alert"});
  let shown = "";

  async function look() {
    const {faults} = await get("/admin/faults");
    const now = JSON.stringify(faults);
    if (now === shown) return;
    // A table made anew would take the focus away from whoever stands in it.
    const inside = list.contains(document.activeElement) ? document.activeElement.dataset.name : null;
    shown = now;
    const off = (name) => element("button", {type: "button", "data-name": name, "aria-label": `Remove ${name}`,
      onclick: () => act(`/admin/faults/${encodeURIComponent(name)}`, `The fault ${name} is removed`)}, "Remove");
    fill(list, faults.length === 0 ? element("p", {class: "soft"}, "Nothing goes wrong.")
      : table("In force, tried in this order", ["Name", "Kind", "Which calls, and what", "Seen", "Hit", ""],
        faults.map((each) => [each.name, each.kind, ["text", text(each)], `${each.seen}`, `${each.hit}`, off(each.name)]),
        {stacked: false}));
    if (inside !== null) {
      const same = [...list.querySelectorAll("button")].find((each) => each.dataset.name === inside);
      (same ?? list.querySelector("button") ?? clear).focus();
    }
  }

  async function act(path, words) {
    try {
      await remove(path);
      tell(words);
      await look();
    } catch (error) {
      alert.textContent = error.message;
    }
  }

  const clear = element("button", {type: "button", onclick: () => act("/admin/faults", "All faults are removed")},
    "Remove all");
  const {kinds, fields} = await get("/admin/faults/kinds");
  place.append(element("h1", {}, "Faults"), list, element("p", {}, clear), alert,
    element("h2", {}, "A new fault"), addForm(kinds, fields, look));
  await look();
  const timer = setInterval(() => look().catch(() => {}), kLook_ms);
  return () => clearInterval(timer);
}
