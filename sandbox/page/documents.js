// What is in the store.
import {get} from "./api.js";
import {element, facts, table} from "./dom.js";
import {xmlView} from "./xml.js";

const kLinkTo = (key) => element("a", {href: `#/document/${encodeURIComponent(key)}`}, key);

export async function showDocuments(place, kind) {
  place.append(element("h1", {}, kind ? `Documents: ${kind}` : "Documents"));
  const {kinds} = await get("/admin/documents");
  place.append(element("nav", {"aria-label": "Kinds of documents"}, element("ul", {}, kinds.map((each) =>
    element("li", {}, element("a", {
      href: `#/documents/${encodeURIComponent(each.kind)}`,
      "aria-current": each.kind === kind ? "page" : null,
    }, `${each.kind} (${each.count})`))))));
  if (!kind) return null;
  const total = kinds.find((each) => each.kind === kind)?.count ?? 0;
  let last = "";
  const list = element("div");
  const more = element("button", {type: "button"}, "More");
  const load = async () => {
    const query = new URLSearchParams({kind, after: last});
    const {documents} = await get(`/admin/documents?${query}`);
    if (documents.length > 0) {
      list.append(table(`From ${documents[0].key} on`,
        ["Key", "Number", "Status", "Belongs to", "Locked by", "Revision"],
        documents.map((each) => [kLinkTo(each.key), each.number, each.status, each.parent,
          each.lockedBy, each.revision ? `${each.revision}` : ""]), {stacked: false}));
      last = documents[documents.length - 1].key;
    }
    more.hidden = list.querySelectorAll("tbody tr").length >= total || documents.length === 0;
  };
  more.addEventListener("click", load);
  place.append(list, element("p", {}, more));
  await load();
  return null;
}

export async function showDocument(place, key) {
  place.append(element("h1", {}, `Document ${key}`));
  const document = await get(`/admin/documents/${encodeURIComponent(key)}`);
  place.append(
    facts([
      ["Kind", element("a", {href: `#/documents/${encodeURIComponent(document.kind)}`}, document.kind)],
      ["Number", document.number],
      ["Status", document.status],
      ["Belongs to", document.parent],
      ["Locked by", document.lockedBy],
      ["Revision", document.revision || ""],
    ]),
    ...xmlView("The document", document.xml));
  return null;
}
