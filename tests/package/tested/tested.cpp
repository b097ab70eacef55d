#include <cstdio>
#include <string>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/testing/test_world.h"

int main() {
  bvconn::test::TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice").replies("4711");
  bvconn::BVInvoiceConnector connector;
  const bvconn::SoapNode invoice = connector.GetInvoice("http://h/", "S", "U-1");
  world.verify();
  const std::string sent = world.last_call().texts().at(0);
  std::printf("asked for %s, got %s\n", sent.c_str(), to_text(invoice.Value()).c_str());
}
