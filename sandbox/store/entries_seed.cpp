#include <array>
#include <utility>

#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/store/documents_tree.h"
#include "sandbox/store/entries.h"

namespace bvconn::sandbox {
namespace {

struct TextRow {
  const char *kind, *root, *uid, *text;
};

constexpr std::array kTexts{
    TextRow{"paragraph", "Paragraph", "PAR-101", "We are pleased to offer the goods listed below."},
    TextRow{"paragraph", "Paragraph", "PAR-102", "Prices hold for ninety days."},
    TextRow{"paragraph", "Paragraph", "PAR-103", "Freight is prepaid to the building site."},
    TextRow{"remark", "Remark", "RMK-201", "Colours may differ a little between batches."},
    TextRow{"remark", "Remark", "RMK-202", "Doors are handed as seen from outside."},
    TextRow{"proposal comment", "ProposalComment", "PCO-301", "Taxes are not included."},
    TextRow{"proposal comment", "ProposalComment", "PCO-302", "Unloading is the customer's work."},
    TextRow{"proposal comment", "ProposalComment", "PCO-303", "Part deliveries on request."},
};

constexpr std::array<const char*, 3> kLogos{"standard", "monochrome", "jubilee"};

struct PrintInfoRow {
  const char *kind, *uid, *name, *template_uid;
};

constexpr std::array kPrintInfos{
    PrintInfoRow{"Quote", "PI-101", "Quote, with prices", "PT-1"},
    PrintInfoRow{"Quote", "PI-102", "Quote, without prices", "PT-2"},
    PrintInfoRow{"Order", "PI-201", "Order", "PT-1"},
    PrintInfoRow{"OrderSubmit", "PI-301", "Order, as submitted", "PT-3"},
    PrintInfoRow{"SAP", "PI-401", "Order, as SAP has it", "PT-3"},
    PrintInfoRow{"Project", "PI-501", "Project sheet", "PT-2"},
    PrintInfoRow{"RFQ", "PI-601", "Request for quote", "PT-1"},
};

struct TemplateRow {
  const char *uid, *name, *paper;
};

constexpr std::array kTemplates{
    TemplateRow{"PT-1", "Letter with logo", "Letter"},
    TemplateRow{"PT-2", "Plain sheet", "Letter"},
    TemplateRow{"PT-3", "Table across", "A4"},
};

struct CountryRow {
  const char *code, *name, *states;  ///< the states' codes with blanks in between
};

constexpr std::array kCountries{
    CountryRow{"CA", "Canada", "AB BC NS ON QC"},
    CountryRow{"MX", "Mexico", "JAL NLE SON"},
    CountryRow{"US", "United States", "AZ CA GA ID MN NM NY OH PA WI"},
};

using Fields = std::initializer_list<std::pair<const char*, const char*>>;

SoapNode tree(const char* root, Fields fields) {
  SoapNode node = SoapNode::make(root);
  for (const auto& [name, text] : fields) node.Nodes().Create(name, text);
  return node;
}

void append_states(const SoapNode& country, std::string_view codes) {
  SoapNodes states = append_group(country.Nodes(), "States").Nodes();
  while (!codes.empty()) {
    const auto end = codes.find(' ');
    states.Create("State", codes.substr(0, end));
    codes.remove_prefix(end == std::string_view::npos ? codes.size() : end + 1);
  }
}

void fill_printing(Entries& entries) {
  for (const PrintInfoRow& row : kPrintInfos) {
    const SoapNode info = tree("PrintInfo", {{"UID", row.uid},
                                             {"Kind", row.kind},
                                             {"Name", row.name},
                                             {"TemplateUID", row.template_uid}});
    entries.keep("print info", "", row.uid, node_to_xml(info));
    // The first of each kind is the house's default.
    if (entries.find("printout default", "", row.kind)) continue;
    const SoapNode printout = tree("Printout", {{"PrintInfoUID", row.uid}, {"Logo", "standard"}});
    printout.Nodes().Create("Copies", std::int32_t{1});
    entries.keep("printout default", "", row.kind, node_to_xml(printout));
  }
  for (const TemplateRow& row : kTemplates) {
    const SoapNode each =
        tree("PrintTemplate", {{"UID", row.uid}, {"Name", row.name}, {"PaperSize", row.paper}});
    entries.keep("print template", "", row.uid, node_to_xml(each));
  }
}

}  // namespace

void fill_entries(Database& database) {
  Entries entries(database);
  for (const TextRow& row : kTexts) {
    const SoapNode text = tree(row.root, {{"UID", row.uid}, {"Text", row.text}});
    entries.keep(row.kind, "", row.uid, node_to_xml(text));
  }
  for (const char* logo : kLogos) entries.keep("logo", "", logo, logo);
  fill_printing(entries);
  for (const CountryRow& row : kCountries) {
    const SoapNode country = tree("Country", {{"Code", row.code}, {"Name", row.name}});
    append_states(country, row.states);
    entries.keep("country", "", row.code, node_to_xml(country));
  }
}

}  // namespace bvconn::sandbox
