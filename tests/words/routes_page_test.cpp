#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <string_view>

#include "bvconn/automation/interface.h"
#include "bvconn/observation/conduct.h"
#include "bvconn/observation/observe.h"

/// Holds what docs/routes.md says of operations against what they are seen to do.
namespace bvconn::test {
namespace {

using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;

using Names = std::set<std::string>;

/// The names in backticks of the line of the page that begins so.
Names names_in_line(std::string_view begin) {
  static const std::regex kName("`(\\w+)`");
  std::ifstream page(BVCONN_SOURCE_DIR "/docs/routes.md");
  Names names;
  for (std::string line; std::getline(page, line);) {
    if (!line.starts_with(begin)) continue;
    for (std::sregex_iterator at(line.begin(), line.end(), kName), end; at != end; ++at) {
      names.insert((*at)[1]);
    }
  }
  return names;
}

bool is_connector(const std::string& cls) {
  return cls.ends_with("Connector");
}

struct Seen {
  Names nowhere;
  Names by_dal_alone;
  Names asking_for_saves;
  Names by_soap_alone_of_invoices;
  std::size_t invoices = 0;
};

const Seen& seen() {
  static const Seen all = [] {
    Seen found;
    for (const auto& operation : automation::observe_all()) {
      if (!is_connector(operation.cls)) continue;
      const bool soap = !operation.requests.empty();
      const bool dal = !operation.dal_calls.empty();
      if (!soap && !dal) found.nowhere.insert(operation.name);
      if (!soap && dal) found.by_dal_alone.insert(operation.name);
      if (operation.cls == "BVInvoiceConnector") {
        ++found.invoices;
        if (soap && !dal) found.by_soap_alone_of_invoices.insert(operation.name);
      }
    }
    return found;
  }();
  return all;
}

TEST(RoutesPage, NamesTheOperationsThatSendNothing) {
  EXPECT_EQ(names_in_line("| that sends nothing"), seen().nowhere);
}

TEST(RoutesPage, SaysOfSixSearchesThatTheyHaveTheLayerAlone) {
  EXPECT_EQ(seen().by_dal_alone,
            (Names{"SearchForOrders", "SearchForOrdersForEmail", "SearchForQuotes",
                   "SearchForQuotesForEmail", "SearchForProjects", "SearchForProjectsForEmail"}));
}

TEST(RoutesPage, SaysOfInvoicesThatTheyHaveSoapAlone) {
  EXPECT_EQ(seen().by_soap_alone_of_invoices.size(), seen().invoices);
  EXPECT_GT(seen().invoices, 0U);
}

TEST(RoutesPage, NamesTheOperationsThatAskWhetherSavesMayGoThere) {
  Names asking;
  for (const ClassInfo* info : automation::classes()) {
    for (const Member& member : info->members) {
      if (member.kind != MemberKind::kOperation || !is_connector(info->name)) continue;
      const auto condition = automation::observe_conduct(*info, member).condition;
      if (condition && condition->needs_save) asking.insert(member.name);
    }
  }
  Names told = names_in_line("3. Three operations ask for `UseDALSave`");
  told.erase("UseDALSave");
  EXPECT_EQ(told, asking);
}

}  // namespace
}  // namespace bvconn::test
