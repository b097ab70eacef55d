// Two threads call at the same time, each in a session of its own:
// two_threads SERVER-URL SESSION INVOICE-UID PROJECT-GID

#include <bvconn/connectors/documents/bv_project_connector.h>
#include <bvconn/connectors/invoice/bv_invoice_connector.h>
#include <bvconn/core/session_state.h>
#include <bvconn/platform/error.h>
#include <bvconn/platform/soap/variant.h>
#include <bvconn/platform/timeout_scope.h>

#include <chrono>
#include <iostream>
#include <string>
#include <thread>

// Plain values are what leaves a thread: nodes and connectors stay on the one that made them.
std::string field_of(const bvconn::SoapNode& document, const char* field) {
  return to_text(document.Nodes().ItemByName(field).Value()) + ", exchange " +
         std::to_string(bvconn::session().LastExchange()->number) + " of its thread";
}

// An exception that leaves a thread's function ends the program, so each thread catches its own.
template <class Call>
void run(std::string& result, Call call) {
  const bvconn::TimeoutScope limit(std::chrono::seconds(30));  // Of this thread alone.
  try {
    result = call();
  } catch (const bvconn::Error& error) {
    result = bvconn::hex_number(error.number) + ": " + error.description;
  }
}

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "usage: two_threads SERVER-URL SESSION INVOICE-UID PROJECT-GID\n";
    return 2;
  }
  std::string invoice_status;
  std::string project_name;
  std::thread first([&] {
    run(invoice_status, [&] {
      bvconn::BVInvoiceConnector invoices;  // Connectors are made where they are used.
      return field_of(invoices.GetInvoice(argv[1], argv[2], argv[3]), "Status");
    });
  });
  std::thread second([&] {
    run(project_name, [&] {
      bvconn::BVProjectConnector projects;
      return field_of(projects.getExistingProject(argv[1], argv[2], argv[4]), "Name");
    });
  });
  first.join();
  second.join();
  std::cout << "invoice: " << invoice_status << "\nproject: " << project_name << '\n';
}
