// Makes two quotes of a project, marks one as quoted, renames the project and saves it:
// quotes_and_save SERVER-URL SESSION PROJECT-GID NEW-NAME

#include <bvconn/connectors/documents/bv_project_connector.h>
#include <bvconn/connectors/documents/bv_quote_connector.h>
#include <bvconn/platform/error.h>
#include <bvconn/platform/soap/variant.h>

#include <iostream>
#include <string>

std::string text_of(const bvconn::SoapNode& node, const char* field) {
  return to_text(node.Nodes().ItemByName(field).Value());
}

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "usage: quotes_and_save SERVER-URL SESSION PROJECT-GID NEW-NAME\n";
    return 2;
  }
  const char* server = argv[1];
  const char* session = argv[2];
  const std::string gid = argv[3];
  try {
    bvconn::BVProjectConnector projects;
    const bvconn::SoapNode project = projects.getExistingProject(server, session, gid);

    // A container with a child for each quote that is wanted.
    const bvconn::SoapNode wanted = bvconn::SoapNode::make("Quotes");
    wanted.Nodes().Create("Quote", {});
    wanted.Nodes().Create("Quote", {});
    const bvconn::SoapNode made = projects.generateQuotes(server, session, wanted, gid);
    for (const bvconn::SoapNode& quote : made.Nodes()) {
      std::cout << "made " << text_of(quote, "QuoteNumber") << '\n';
    }

    bvconn::BVQuoteConnector quotes;
    const std::string first = text_of(made.Nodes().Item(0), "GID");
    const bvconn::SoapNode quoted = quotes.SetQuoteStatusToQuoted(server, session, first);
    std::cout << first << " is " << text_of(quoted, "Status") << '\n';

    // What the server gave is changed where it stands, and goes back whole: what this program does
    // not know of stays as it was.
    project.Nodes().ItemByName("Name").Value(argv[4]);
    projects.SaveProject(server, session, project);
    const bvconn::SoapNode again = projects.getExistingProject(server, session, gid);
    std::cout << gid << " is named " << text_of(again, "Name") << '\n';
  } catch (const bvconn::Error& error) {
    std::cerr << bvconn::hex_number(error.number) << ": " << error.description << '\n';
    return 1;
  }
}
