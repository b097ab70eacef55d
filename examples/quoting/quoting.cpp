// Quotes a customer: looks him up, makes a project with what he asked for, saves it, has it quoted,
// and prints the total. `quoting CUSTOMER PROJECT-NAME [SECONDS]`; the server is the one in
// BVCONN_SERVER, the session the one in BVCONN_SESSION. No call takes more than so many seconds.
//
// It ends with 0 when there is a quote, with 1 when the server refused something, and with 3 when
// somebody has to look what the server did, or to try later.

#include <bvconn/connectors/documents/bv_project_connector.h>
#include <bvconn/connectors/documents/bv_quote_connector.h>
#include <bvconn/connectors/search/bv_search_connector.h>
#include <bvconn/platform/error.h>
#include <bvconn/platform/soap/variant.h>
#include <bvconn/platform/timeout_scope.h>

#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {

struct Place {
  std::string server;
  std::string session;
};

std::string text_of(const bvconn::SoapNode& node, const char* field) {
  return to_text(node.Nodes().ItemByName(field).Value());
}

bvconn::SoapNode customer_named(const Place& at, const std::string& name) {
  const bvconn::SoapNode found = bvconn::BVSearchConnector().SearchForCustomers(
      at.session, at.server,
      {.Name = name, .ExSearch = "False", .OnlyActive = "True", .OnlyBrimvale = "False"});
  if (found.Nodes().Count() != 1) {
    throw std::runtime_error(std::to_string(found.Nodes().Count()) + " customers are named " +
                             name);
  }
  return found.Nodes().Item(0);
}

void add_line(const bvconn::SoapNode& lines, const char* catalog_number, int quantity,
              double unit_price) {
  const bvconn::SoapNode line = lines.Nodes().Create("Line", {});
  line.Nodes().Create("CatalogNumber", catalog_number);
  line.Nodes().Create("Quantity", quantity);
  line.Nodes().Create("UnitPrice", unit_price);
}

// A new project has its key already, so it can be found again whatever becomes of saving it.
bvconn::SoapNode project_for(const Place& at, const bvconn::SoapNode& customer,
                             const std::string& name) {
  bvconn::SoapNode project = bvconn::BVProjectConnector().getNewProject(at.server, at.session);
  project.Nodes().ItemByName("Name").Value(name);
  const bvconn::SoapNode its_customer = project.Nodes().ItemByName("Customer");
  its_customer.Nodes().Create("GID", text_of(customer, "GID"));
  its_customer.Nodes().Create("Name", text_of(customer, "Name"));
  const bvconn::SoapNode lines = project.Nodes().ItemByName("Lines");
  add_line(lines, "INS-R30", 12, 85.10);
  add_line(lines, "LUM-2408", 40, 3.42);
  return project;
}

bool is_saved(const Place& at, const std::string& gid) {
  try {
    bvconn::BVProjectConnector().getExistingProject(at.server, at.session, gid);
    return true;
  } catch (const bvconn::Error& error) {
    // The server says that there is none; any other error leaves it open.
    if (error.outcome == bvconn::Outcome::kAnswered) return false;
    throw;
  }
}

// A save whose answer does not come may be done or not, and is not simply made again.
void save(const Place& at, const bvconn::SoapNode& project) {
  const std::string gid = text_of(project, "GID");
  try {
    bvconn::BVProjectConnector().SaveProject(at.server, at.session, project);
    std::cout << gid << " is saved\n";
  } catch (const bvconn::Error& error) {
    if (error.outcome != bvconn::Outcome::kUnknown) throw;
    if (!is_saved(at, gid)) throw;
    std::cout << gid << " is saved, though its answer was lost\n";
  }
}

double total_of(const bvconn::SoapNode& quote) {
  double total = 0;
  for (const bvconn::SoapNode& line : quote.Nodes().ItemByName("Lines").Nodes()) {
    total += to_double(line.Nodes().ItemByName("Quantity").Value()) *
             to_double(line.Nodes().ItemByName("UnitPrice").Value());
  }
  return total;
}

void quote(const Place& at, const std::string& customer_name, const std::string& project_name) {
  const bvconn::SoapNode customer = customer_named(at, customer_name);
  const bvconn::SoapNode project = project_for(at, customer, project_name);
  save(at, project);

  const bvconn::SoapNode wanted = bvconn::SoapNode::make("Quotes");
  wanted.Nodes().Create("Quote", {});
  const bvconn::SoapNode made = bvconn::BVProjectConnector().generateQuotes(
      at.server, at.session, wanted, text_of(project, "GID"));
  const bvconn::SoapNode quoted = bvconn::BVQuoteConnector().getExistingQuote(
      at.server, at.session, text_of(made.Nodes().Item(0), "GID"));
  std::cout << text_of(quoted, "QuoteNumber") << " for " << text_of(customer, "Name") << ": "
            << std::fixed << std::setprecision(2) << total_of(quoted) << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  const char* const server = std::getenv("BVCONN_SERVER");
  const char* const session = std::getenv("BVCONN_SESSION");
  if (argc < 3 || argc > 4 || !server || !session) {
    std::cerr << "usage: quoting CUSTOMER PROJECT-NAME [SECONDS], with the server in BVCONN_SERVER "
                 "and the session in BVCONN_SESSION\n";
    return 2;
  }
  const bvconn::TimeoutScope limit(std::chrono::seconds(argc > 3 ? std::atoi(argv[3]) : 30));
  try {
    quote({.server = server, .session = session}, argv[1], argv[2]);
    return 0;
  } catch (const bvconn::Error& error) {
    std::cerr << "no quote: " << error.description << '\n';
    return error.outcome == bvconn::Outcome::kAnswered ? 1 : 3;
  } catch (const std::runtime_error& error) {
    std::cerr << "no quote: " << error.what() << '\n';
    return 1;
  }
}
