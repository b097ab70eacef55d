// Prints the fields of one invoice: first_program SERVER-URL SESSION INVOICE-UID

#include <bvconn/connectors/invoice/bv_invoice_connector.h>
#include <bvconn/platform/explain.h>
#include <bvconn/platform/soap/variant.h>

#include <iostream>

using bvconn::Variant;

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: first_program SERVER-URL SESSION INVOICE-UID\n";
    return 2;
  }
  try {
    bvconn::BVInvoiceConnector connector;
    const bvconn::SoapNode invoice = connector.GetInvoice(argv[1], argv[2], argv[3]);
    for (const bvconn::SoapNode& field : invoice.Nodes()) {
      const Variant value = field.Value();
      const bool parts = value.is(Variant::Type::kNode) || value.is(Variant::Type::kArray);
      std::cout << field.Name() << ": "
                << (parts ? std::to_string(field.Nodes().Count()) + " parts" : to_text(value))
                << '\n';
    }
  } catch (const bvconn::Error& error) {
    std::cerr << bvconn::hex_number(error.number) << " from " << error.source << ": "
              << error.description << '\n'
              << explain(error) << '\n';
    return 1;
  }
}
