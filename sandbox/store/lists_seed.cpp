#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/store/dice.h"
#include "sandbox/store/documents.h"
#include "sandbox/store/lists.h"

namespace bvconn::sandbox {
namespace {

using Fields = std::initializer_list<std::pair<const char*, std::string>>;

struct Place {
  std::string_view city, state, country, zip_code;
};

constexpr std::array kPlaces{
    Place{"Madison", "WI", "US", "53703"},    Place{"Columbus", "OH", "US", "43215"},
    Place{"Tucson", "AZ", "US", "85701"},     Place{"Halifax", "NS", "CA", "B3H 1A1"},
    Place{"Albany", "NY", "US", "12207"},     Place{"Boise", "ID", "US", "83702"},
    Place{"Sacramento", "CA", "US", "95814"}, Place{"Savannah", "GA", "US", "31401"},
    Place{"Pittsburgh", "PA", "US", "15222"}, Place{"Calgary", "AB", "CA", "T2P 1J9"},
};
constexpr std::array<std::string_view, 20> kFirst{
    "Ashgrove", "Beacon",    "Cedarline", "Driftwood", "Elmhurst", "Foxglove",  "Gatehouse",
    "Heathrow", "Ivybank",   "Jasper",    "Kingsway",  "Larkspur", "Millstone", "Newbridge",
    "Oakhaven", "Pinecrest", "Quayside",  "Redfern",   "Sandhill", "Thornbury"};
constexpr std::array<std::string_view, 10> kTrade{"Builders",  "Contracting", "Homes",  "Hardware",
                                                  "Roofing",   "Joinery",     "Supply", "Masonry",
                                                  "Interiors", "Glazing"};
constexpr std::array<std::string_view, 20> kManufacturers{
    "Clearpane",         "Evenwall",          "Fallwater",           "Grey River Cement",
    "Northfell Timber",  "Old Kiln Works",    "Stonecroft",          "Tightgrip",
    "Warmfold",          "Ambleside Glass",   "Brightwell Lighting", "Copperlane Pipes",
    "Dovetail Cabinets", "Everdry Membranes", "Flintlock Fixings",   "Goldcrest Flooring",
    "Highmoor Slate",    "Inglenook Stoves",  "Jettystone Paving",   "Kestrel Ladders"};
constexpr std::size_t kManufacturersWithProducts = 9;
constexpr std::array<std::string_view, 6> kGoods{"Panel", "Bracket", "Trim",
                                                 "Board", "Seal",    "Frame"};

template <typename Items>
std::string nth(const Items& items, std::int64_t index) {
  return std::string(items[static_cast<std::size_t>(index) % items.size()]);
}
const Place& place(std::int64_t index) {
  return kPlaces[static_cast<std::size_t>(index) % kPlaces.size()];
}
std::string agent(std::int64_t index) {
  return conversions::format_number(static_cast<double>(90 + index % 60), "000");
}
std::string yes_if(bool truth) {
  return truth ? "Y" : "N";
}

class ListFilling {
 public:
  explicit ListFilling(Database& database) : database_(database), lists_(database) {}

  void brands_and_makers();
  void agents();
  void customers();
  void products();
  void approvals();
  void codes();
  void prices();

 private:
  void add(std::string_view list, std::string_view root, Fields fields) {
    const SoapNode row = SoapNode::make(root);
    for (const auto& [name, text] : fields) row.Nodes().Create(name, text);
    lists_.add(list, row);
  }
  void add_codes(std::string_view list, std::string_view root, Fields codes) {
    for (const auto& [code, name] : codes) add(list, root, {{"Code", code}, {"Name", name}});
  }
  void enumeration(const std::string& group, Fields codes) {
    for (const auto& [code, name] : codes) {
      add("enumeration", "Enumeration", {{"Group", group}, {"Code", code}, {"Name", name}});
    }
  }
  void customer(std::int64_t index, const std::string& gid, const std::string& account,
                const std::string& name, const Place& site);

  Database& database_;
  Lists lists_;
};

void ListFilling::brands_and_makers() {
  for (std::int64_t i = 0; i < 20; ++i) {
    const std::string code = numbered("B", 10 + i);
    add("brand", "Brand",
        {{"GID", numbered("BRD-", 1 + i)},
         {"Code", code},
         {"Name", nth(kFirst, 7 * i) + " " + nth(kGoods, i) + "s"}});
    add("manufacturer", "Manufacturer",
        {{"GID", numbered("MFR-", 1 + i)},
         {"Code", numbered("M", 10 + i)},
         {"Name", nth(kManufacturers, i)}});
    add("vendor", "Vendor",
        {{"GID", numbered("VEN-", 1 + i)},
         {"AccountGroup", i % 2 == 0 ? "GOODS" : "FREIGHT"},
         {"Name", nth(kFirst, 3 * i) + " " + nth(kTrade, 6 + i)}});
  }
  for (std::int64_t i = 0; i < 8; ++i) {
    add("distribution centre", "DistributionCenter",
        {{"Code", numbered("DC", 1 + i)},
         {"Name", std::string(place(i).city) + " warehouse"},
         {"City", std::string(place(i).city)},
         {"State", std::string(place(i).state)},
         {"Country", std::string(place(i).country)}});
    add("promotion", "Promotion",
        {{"GID", numbered("PRM-", 1 + i)},
         {"Code", numbered("P", 10 + i)},
         {"Name", nth(kGoods, i) + " weeks"}});
  }
}

void ListFilling::agents() {
  for (std::int64_t i = 0; i < 60; ++i) {
    const Place& site = place(i);
    add("agent", "Agent",
        {{"GID", numbered("AGT-", 1 + i)},
         {"AgentID", agent(i)},
         {"Name", nth(kFirst, i) + " Agency " + std::to_string(i / 20 + 1)},
         {"PartnerID", numbered("PTR-", 301 + i % 5)},
         {"City", std::string(site.city)},
         {"State", std::string(site.state)},
         {"Country", std::string(site.country)},
         {"Default", yes_if(i < 5)}});
    add("sales person", "SalesPerson",
        {{"GID", numbered("SLP-", 1 + i)},
         {"AgentGID", numbered("AGT-", 1 + i / 2)},
         {"AgentID", agent(i / 2)},
         {"Name", nth(kFirst, 11 * i) + ", " + nth(kGoods, i)}});
  }
}

void ListFilling::customer(std::int64_t index, const std::string& gid, const std::string& account,
                           const std::string& name, const Place& site) {
  add("customer", "Customer",
      {{"GID", gid},
       {"AccountNumber", account},
       {"PreviousAccountNumber", numbered("P", 10'010 + 10 * index)},
       {"Name", name},
       {"Keyword", name.substr(0, name.find(' '))},
       {"CustomerType", index % 3 == 0 ? "DIST" : "CONT"},
       {"AgentID", agent(index)},
       {"City", std::string(site.city)},
       {"State", std::string(site.state)},
       {"Country", std::string(site.country)},
       {"ZipCode", std::string(site.zip_code)},
       {"Active", yes_if(index % 10 != 9)},
       {"Brimvale", yes_if(index % 4 == 0)},
       {"CreditTerms", index % 2 == 0 ? "N30" : "N60"}});
}

void ListFilling::customers() {
  std::int64_t index = 0;
  Statement known(database_,
                  "SELECT gid, account_number, name, city, state, country, zip_code FROM customers"
                  " ORDER BY gid");
  while (known.step()) {
    const std::array texts{known.text(3), known.text(4), known.text(5), known.text(6)};
    customer(index++, known.text(0), known.text(1), known.text(2),
             {texts[0], texts[1], texts[2], texts[3]});
  }
  Statement insert(database_, "INSERT INTO customers VALUES (?, ?, ?, ?, ?, ?, ?)");
  for (; index < 200; ++index) {
    const Place& site = place(index);
    const std::string gid = numbered("CUS-", 2'001 + index);
    const std::string account = numbered("", 40'010 + 10 * index);
    const std::string name = nth(kFirst, index) + " " + nth(kTrade, index / 20);
    insert.bind(gid).bind(account).bind(name).bind(site.city).bind(site.state);
    insert.bind(site.country).bind(site.zip_code).run();
    customer(index, gid, account, name, site);
  }
}

void ListFilling::products() {
  Statement insert(database_, "INSERT INTO products VALUES (?, ?, ?, ?, ?)");
  for (std::int64_t i = 0; i < 132; ++i) {
    const std::string goods = nth(kGoods, i);
    insert.bind(goods.substr(0, 2) + "X-" + std::to_string(200 + i));
    insert.bind(goods + ", size " + std::to_string(1 + i / 6));
    insert.bind(kManufacturers[static_cast<std::size_t>(i) % kManufacturersWithProducts]);
    insert.bind("each").bind(250 + 35 * i).run();
  }
  Documents documents(database_);
  std::int64_t i = 0;
  for (const Product& each : documents.products()) {
    add("catalogue number", "CatalogNumber",
        {{"CatalogNumber", each.catalog_number},
         {"Description", each.description},
         {"ManufacturerGID", documents.manufacturer_gid(each.manufacturer)},
         {"ManufacturerName", each.manufacturer},
         {"BrandGID", numbered("BRD-", 1 + i % 20)},
         {"ProductType", i % 2 == 0 ? "STOCK" : "MADE TO ORDER"},
         {"MaterialID", numbered("MAT-", 1'000 + i)},
         {"UPCNumber", numbered("0740", 100'000 + i)},
         {"Classification", numbered("C", 1 + i % 4)},
         {"Country", "US"},
         {"Unit", each.unit}});
    for (const char* centre : {"DC1", "DC2"}) {
      add("inventory", "Inventory",
          {{"CatalogNumber", each.catalog_number},
           {"DistributionCenter", centre},
           {"Quantity", std::to_string(7 * i % 90)}});
    }
    ++i;
  }
}

void ListFilling::approvals() {
  constexpr std::array<std::string_view, 14> kReasons{
      "Pricing",   "Config",        "Review",     "ApprGranted",      "ApprDenied",
      "Returned",  "QSSRCatChange", "SpecSubmit", "SpecReg",          "SpecDenied",
      "Territory", "ChangeReq",     "ChangeRev",  "CompetitiveReview"};
  constexpr std::array kKinds{&kProjectKind, &kQuoteKind, &kOrderKind};
  for (std::int64_t i = 0; i < 60; ++i) {
    const DocumentKind& kind = *kKinds[static_cast<std::size_t>(i % 3)];
    add("approval", "Approval",
        {{"GID", numbered(kind.key_prefix, kind.first_key + i / 3)},
         {"Kind", std::string(kind.name)},
         {"AgentID", agent(i % 30)},
         {"Reason", nth(kReasons, i)},
         {"Account", i % 5 == 0 ? "NA" : (i % 5 == 1 ? "CF" : "")},
         {"OrderKind", i % 2 == 0 ? "PROJECT" : "STOCK"},
         {"BrandGID", numbered("BRD-", 1 + i % 20)},
         {"BrandCode", numbered("B", 10 + i % 20)},
         {"PromoGID", numbered("PRM-", 1 + i % 8)},
         {"PromoCode", numbered("P", 10 + i % 8)},
         {"ManufacturerCode", numbered("M", 10 + i % 9)},
         {"IndustryCode", numbered("I", 1 + i % 4)},
         {"ShippingMethod", i % 2 == 0 ? "TRUCK" : "PARCEL"},
         {"InternationalShipping", yes_if(i % 7 == 0)},
         {"HFR", yes_if(i % 6 == 0)},
         {"QuickShip", yes_if(i % 4 == 0)}});
  }
}

void ListFilling::codes() {
  add_codes("authorization", "Authorization",
            {{"ORDER", "May order"}, {"QUOTE", "May quote"}, {"APPROVE", "May approve"}});
  add_codes(
      "shipping method", "ShippingMethod",
      {{"TRUCK", "Full truck"}, {"PARCEL", "Parcel service"}, {"PICKUP", "Customer's pick-up"}});
  add_codes("queue shipping method", "ShippingMethod",
            {{"TRUCK", "Full truck"}, {"PARCEL", "Parcel service"}});
  add_codes("credit terms", "CreditTerms",
            {{"N30", "Net 30 days"}, {"N60", "Net 60 days"}, {"CIA", "Cash in advance"}});
  add_codes("user name", "UserName", {{"anna", "Anna Field"}, {"ben", "Ben Hollow"}});
  add_codes("header comment", "HeaderComment", {{"GENERAL", "General"}, {"SHIPPING", "Shipping"}});
  add_codes("CUD code", "CUDCode", {{"C1", "Contractor"}, {"C2", "Dealer"}, {"C3", "Public body"}});
  add_codes("RMA status", "RMAStatus",
            {{"NEW", "New"}, {"SAVED", "Saved"}, {"SUBMITTED", "Submitted"}, {"CLOSED", "Closed"}});
  add_codes("RMA term", "RMATerm", {{"CREDIT", "Credit"}, {"REPLACE", "Replacement"}});
  add_codes("RMA code", "RMACode", {{"R1", "Damaged"}, {"R2", "Wrong goods"}, {"R3", "Surplus"}});
  for (const auto& [code, name] :
       {std::pair{"D1", "Damaged in transit"}, {"O1", "Ordered in error"}}) {
    add("order reason", "Reason", {{"DocumentTypeCode", "ZRE"}, {"Code", code}, {"Name", name}});
  }
  add("order reason", "Reason",
      {{"DocumentTypeCode", "ZOR"}, {"Code", "S1"}, {"Name", "Ordered on site"}});
  enumeration("UNIT", {{"EA", "each"}, {"BX", "box"}, {"PK", "pack"}});
  enumeration("FREIGHT", {{"PPD", "prepaid"}, {"COL", "collect"}});
  for (std::int64_t i = 0; i < 12; ++i) {
    add("GL code", "GLCode",
        {{"Code", numbered("", 6'000 + 10 * i)},
         {"Description", nth(kTrade, i) + " costs"},
         {"Misc", yes_if(i % 3 == 0)}});
    add("national account", "NationalAccount",
        {{"Code", numbered("NA", 1 + i)},
         {"Name", nth(kFirst, 5 * i) + " Stores"},
         {"AccountType", i % 2 == 0 ? "RETAIL" : "HOTEL"},
         {"SpecType", numbered("S", 1 + i % 3)},
         {"Kind", i % 3 == 0 ? "NA" : (i % 3 == 1 ? "NS" : "CF")}});
  }
}

void ListFilling::prices() {
  std::int64_t i = 0;
  for (const Product& each : Documents(database_).products()) {
    for (std::int64_t year = 2024; year <= 2025; ++year, ++i) {
      const std::int64_t customer = i % 12;
      add("price", "Price",
          {{"CatalogNumber", each.catalog_number},
           {"Description", each.description},
           {"AgentID", agent(i % 30)},
           {"CustomerGID", numbered("CUS-", 2'001 + customer)},
           {"DistributorGID", numbered("CUS-", 2'001 + customer)},
           {"DistributorName",
            Documents(database_).customer_name(numbered("CUS-", 2'001 + customer)).value_or("")},
           {"SearchType", i % 2 == 0 ? "QUOTE" : "ORDER"},
           {"Date", std::to_string(year) + "-0" + std::to_string(1 + i % 9) + "-15"},
           {"Cents", std::to_string(each.list_price_cents * (80 + i % 20) / 100)}});
    }
  }
}

}  // namespace

void fill_lists(Database& database) {
  ListFilling filling(database);
  filling.brands_and_makers();
  filling.agents();
  filling.customers();
  filling.products();
  filling.approvals();
  filling.codes();
  filling.prices();
}

}  // namespace bvconn::sandbox
