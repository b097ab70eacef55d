// The connector's call as an application makes it, with the real platform: libcurl, the settings
// files and the log of the environment.
#include "bvconn/connectors/invoice/bv_invoice_connector.h"

#include "bvconn/platform/error.h"
#include "peers/peer.h"

namespace {

class Connector final : public bench::Peer {
 public:
  explicit Connector(std::string url) : url_(std::move(url)) {}

  void call(const bench::Case& which) override {
    if (last_ != &which) address_ = bench::url_of(url_, which);
    last_ = &which;
    if (!which.is_fault) {
      result_ = connector_.GetInvoice(address_, bench::kSession, bench::kInvoice);
      return;
    }
    try {
      result_ = connector_.GetInvoice(address_, bench::kSession, bench::kInvoice);
    } catch (const bvconn::Error& error) {
      words_ = error.description;
    }
  }

  std::string seen(const bench::Case& which) override {
    if (which.is_fault) return words_;
    const bvconn::SoapNodes parts = result_.Nodes();
    if (which.rows == 0) return to_text(parts.ItemByName("number").Value());
    const bvconn::SoapNode last = parts.Item(parts.Count() - 1);
    return bench::facts_of_rows(parts.Count(), to_text(last.Nodes().ItemByName("number").Value()));
  }

 private:
  std::string url_;
  const bench::Case* last_ = nullptr;
  std::string address_;
  bvconn::BVInvoiceConnector connector_;
  bvconn::SoapNode result_;
  std::string words_;
};

}  // namespace

std::unique_ptr<bench::Peer> bench::make_peer(const std::string& url) {
  return std::make_unique<Connector>(url);
}
