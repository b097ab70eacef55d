// Shows how quotes can be printed, and chooses one way as the user's default:
// print_defaults SERVER-URL SESSION PRINT-INFO-UID

#include <bvconn/connectors/maintenance/bv_maintenance_connector.h>
#include <bvconn/connectors/print/bv_print_connector.h>
#include <bvconn/platform/error.h>
#include <bvconn/platform/soap/variant.h>

#include <iostream>
#include <string>

std::string text_of(const bvconn::SoapNode& node, const char* field) {
  return to_text(node.Nodes().ItemByName(field).Value());
}

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: print_defaults SERVER-URL SESSION PRINT-INFO-UID\n";
    return 2;
  }
  const char* server = argv[1];
  const char* session = argv[2];
  try {
    bvconn::BVPrintConnector printing;
    const bvconn::SoapNode infos = printing.GetPrintInfos(server, session);
    for (const bvconn::SoapNode& info : infos.Nodes()) {
      std::cout << text_of(info, "UID") << "  " << text_of(info, "Name") << '\n';
    }

    // Beware: this connector takes the session first and the address second. The form with an
    // endpoint, bvconn::call, does away with the order.
    bvconn::BVMaintenanceConnector maintenance;
    const std::string before = maintenance.GetUserQuotePrintoutDefault(session, server);
    maintenance.SetUserQuotePrintoutDefault(session, server, argv[3]);
    const std::string after = maintenance.GetUserQuotePrintoutDefault(session, server);
    std::cout << "the default was " << (before.empty() ? "none" : before) << ", and is " << after
              << '\n';

    // What is in force for this user: his own choice, the agent's or the house's.
    const bool own = true;
    const bvconn::SoapNode defaults = printing.GetQuotePrintoutDefaults(server, session, own);
    std::cout << "quotes are printed as " << text_of(defaults, "PrintInfoUID") << '\n';
  } catch (const bvconn::Error& error) {
    std::cerr << bvconn::hex_number(error.number) << ": " << error.description << '\n';
    return 1;
  }
}
