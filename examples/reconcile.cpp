// Finds the open invoices of an agent and reconciles the first: reconcile SERVER-URL SESSION AGENT

#include <bvconn/connectors/invoice/bv_invoice_connector.h>
#include <bvconn/platform/error.h>
#include <bvconn/platform/error_numbers.h>
#include <bvconn/platform/soap/variant.h>

#include <iostream>
#include <string>

std::string text_of(const bvconn::SoapNode& node, const char* field) {
  return to_text(node.Nodes().ItemByName(field).Value());
}

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: reconcile SERVER-URL SESSION AGENT\n";
    return 2;
  }
  const char* server = argv[1];
  const char* session = argv[2];
  const char* agent = argv[3];
  try {
    bvconn::BVInvoiceConnector invoices;
    // Criteria are named where they are given; all the others are sent empty.
    const bvconn::SoapNode found =
        invoices.InvoiceSearch(server, session, {.strStatus = "OPEN", .strAgent = agent});
    std::cout << found.Nodes().Count() << " open invoices of agent " << agent << '\n';
    if (found.Nodes().Count() == 0) return 0;

    const std::string uid = text_of(found.Nodes().Item(0), "InvoiceUID");
    const bvconn::SoapNode made = invoices.AutoReconcileSingle(server, session, uid, agent);
    const std::string reconcile = text_of(made, "GID");
    std::cout << reconcile << " is " << text_of(made, "Status") << '\n';

    // Fetching it locks it for this user, and saving keeps the lock: let go of it at the end.
    const bvconn::SoapNode fetched = invoices.GetOrderReconcile(server, session, reconcile, agent);
    invoices.SaveOrderReconcile(server, session, fetched);
    const bool keep_invoices = false;
    invoices.UnlockOrderReconcile(server, session, reconcile, keep_invoices, agent);
    std::cout << reconcile << " is saved and unlocked\n";
  } catch (const bvconn::Error& error) {
    // A mapped fault has a number of its own and no words: those are in the record of exchanges.
    const bool mine = error.number == bvconn::error_numbers::kGetReconcileFault;
    std::cerr << bvconn::hex_number(error.number) << ": "
              << (mine ? "somebody else has the reconcile" : error.description) << '\n';
    return 1;
  }
}
