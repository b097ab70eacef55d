// The search of the reference. It works from a file: the index is a script that is included when it is
// first needed, and nothing is fetched. A query may stand in the address too: index.html#q=getInvoice.
(function () {
  "use strict";

  const kShown = 30;
  // An oddity is called by the words of the operation that has it, and comes behind it.
  const kWeights = { class: 9, guide: 9, operation: 7, error: 7, event: 5, property: 4, heading: 3,
                     "C++": 2, row: 0, oddity: -25 };
  // Names that say all by themselves: whoever types one of these means just that.
  const kExact = { error: 100, constant: 100, "fault code": 80, method: 55, "wire name": 55, "service object": 50,
                   argument: 45, parameter: 35, service: 30 };

  const root = document.body.dataset.root;
  const query = document.getElementById("query");
  const found = document.getElementById("found");
  let chosen = -1;

  // In any case of letters, and with or without the hyphen: time-outs, timeout.
  function folded(text) {
    return text.toLowerCase().replace(/-/g, "");
  }

  // "getSAPOrder" has the words get, sap and order.
  function words(name) {
    return name.replace(/-/g, "").replace(/([a-z0-9])([A-Z])/g, "$1 $2").replace(/([A-Z]+)([A-Z][a-z])/g, "$1 $2")
      .toLowerCase().split(/[^a-z0-9]+/);
  }

  function scoreOfText(text, term) {
    const lower = folded(text);
    const last = lower.slice(Math.max(lower.lastIndexOf("."), lower.lastIndexOf(":")) + 1);
    if (lower === term || last === term) return 100;
    if (last.startsWith(term)) return 65;
    if (lower.startsWith(term)) return 60;
    const parts = words(text);
    if (parts.some((_, at) => parts.slice(at).join("").startsWith(term))) return 45;
    return lower.includes(term) ? 30 : 0;
  }

  function scoreOfName(kind, name, term) {
    const lower = folded(name);
    if (lower === term) return kExact[kind] || 40;
    if (lower.startsWith(term)) return 22;
    return lower.includes(term) ? 12 : 0;
  }

  // What one term finds in an entry, and where: all terms have to be found somewhere.
  function match(entry, term) {
    let best = { score: scoreOfText(entry.t, term), why: "" };
    for (const [kind, name] of entry.n) {
      const score = scoreOfName(kind, name, term);
      if (score > best.score) best = { score, why: kind + " " + name };
    }
    if (best.score === 0 && folded(entry.d).includes(term)) best = { score: 5, why: "" };
    return best;
  }

  function search(text) {
    const terms = folded(text).split(/\s+/).filter(Boolean);
    if (terms.length === 0) return [];
    const results = [];
    for (const entry of window.bvconnSearchIndex) {
      const matches = terms.map((term) => match(entry, term));
      if (matches.some((each) => each.score === 0)) continue;
      const score = matches.reduce((sum, each) => sum + each.score, 0) / terms.length;
      const why = matches.map((each) => each.why).filter(Boolean).join(", ");
      results.push({ entry, score: score + (kWeights[entry.k] || 0), why });
    }
    return results.sort((a, b) => b.score - a.score || a.entry.t.length - b.entry.t.length ||
                                  (a.entry.t < b.entry.t ? -1 : 1));
  }

  function element(name, className, text) {
    const made = document.createElement(name);
    made.className = className;
    made.textContent = text;
    return made;
  }

  function shownResult(result, place) {
    const line = element("a", "result", "");
    line.href = root + result.entry.u;
    line.id = "result-" + place;
    line.setAttribute("role", "option");
    line.append(element("span", "kind", result.entry.k), element("span", "title", result.entry.t));
    const more = [result.why, result.entry.d].filter(Boolean).join(" – ");
    if (more) line.append(element("span", "more", more));
    return line;
  }

  function show() {
    const results = search(query.value);
    const open = query.value.trim() !== "";
    found.replaceChildren(...results.slice(0, kShown).map(shownResult));
    if (open && results.length === 0) found.append(element("p", "none", "Nothing has all of these words."));
    if (results.length > kShown) {
      found.append(element("p", "none", results.length - kShown + " more; another word narrows them."));
    }
    found.hidden = !open;
    query.setAttribute("aria-expanded", String(open));
    choose(results.length > 0 ? 0 : -1);
  }

  function choose(place) {
    const lines = found.querySelectorAll(".result");
    chosen = lines.length === 0 ? -1 : Math.max(0, Math.min(place, lines.length - 1));
    lines.forEach((line, at) => line.setAttribute("aria-selected", String(at === chosen)));
    if (chosen < 0) {
      query.removeAttribute("aria-activedescendant");
      return;
    }
    query.setAttribute("aria-activedescendant", lines[chosen].id);
    lines[chosen].scrollIntoView({ block: "nearest" });
  }

  function close() {
    found.hidden = true;
    query.setAttribute("aria-expanded", "false");
  }

  const script = document.createElement("script");
  script.src = root + "search-index.js";

  function withIndex(then) {
    if (window.bvconnSearchIndex) return then();
    script.addEventListener("load", then, { once: true });
    document.head.append(script);  // once: the same element is not run again
  }

  const kKeys = {
    ArrowDown: () => choose(chosen + 1),
    ArrowUp: () => choose(chosen - 1),
    Enter: () => {
      const line = found.querySelectorAll(".result")[chosen];
      if (line && !found.hidden) line.click();
    },
    Escape: () => {
      query.value = "";
      close();
      query.blur();
    },
  };

  query.addEventListener("input", () => withIndex(show));
  query.addEventListener("focus", () => withIndex(() => query.value && show()));
  query.addEventListener("keydown", (event) => {
    if (!kKeys[event.key]) return;
    event.preventDefault();
    kKeys[event.key]();
  });
  document.addEventListener("keydown", (event) => {
    const typing = /^(INPUT|TEXTAREA|SELECT)$/.test(document.activeElement.tagName);
    if (event.key !== "/" || typing || event.ctrlKey || event.metaKey || event.altKey) return;
    event.preventDefault();
    query.focus();
    query.select();
  });
  document.addEventListener("click", (event) => {
    if (!event.target.closest("[role=search]")) close();
  });

  function queryOfAddress() {
    if (!location.hash.startsWith("#q=")) return;
    query.value = decodeURIComponent(location.hash.slice(3));
    withIndex(show);
  }
  window.addEventListener("hashchange", queryOfAddress);
  queryOfAddress();
})();
