// Makes one call on both routes: both_routes SERVER-URL SESSION DAL-URL USER PASSWORD ORDER-GID

#include <bvconn/automation/endpoint.h>
#include <bvconn/core/session_state.h>
#include <bvconn/dal/bv_connector_object.h>
#include <bvconn/platform/error.h>
#include <bvconn/platform/soap/print.h>

#include <iostream>

// The call is the same on both routes: the session of this thread knows which one is taken.
void show_order(const bvconn::Endpoint& office, const char* order) {
  bvconn::BVOrderConnector orders;
  const bool with_prices = true;
  const bvconn::SoapNode view =
      bvconn::call<&bvconn::BVOrderConnector::getSAPOrderView>(office, orders, order, with_prices);
  const auto exchange = bvconn::session().LastExchange();
  std::cout << "By " << route_text(exchange->route) << ", from " << exchange->url << ":\n";
  print(view);
}

int main(int argc, char** argv) {
  if (argc != 7) {
    std::cerr << "usage: both_routes SERVER-URL SESSION DAL-URL USER PASSWORD ORDER-GID\n";
    return 2;
  }
  const bvconn::Endpoint office{.url = argv[1], .session = argv[2]};
  try {
    show_order(office, argv[6]);  // Nobody has logged in yet, so by SOAP.

    bvconn::BVConnectorObject object;
    object.UserName(argv[4]);
    object.Password(argv[5]);
    object.SalesOrg("1000");
    object.AppVer("1.0");
    object.InitTorvexDAL(argv[3]);
    // A login that failed throws nothing, deliberately: the record of exchanges knows of it.
    if (const auto exchange = bvconn::session().LastExchange(); exchange && exchange->error) {
      std::cerr << "no login: " << exchange->error->description << '\n';
      return 1;
    }
    object.UseTorvexDAL();
    show_order(office, argv[6]);
  } catch (const bvconn::Error& error) {
    std::cerr << bvconn::hex_number(error.number) << ": " << error.description << '\n';
    return 1;
  }
}
