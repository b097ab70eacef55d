// The fastest SOAP stack: stubs that gSOAP's compiler makes of invoices.gsoap, with its own HTTP,
// read the reply into structures of typed fields.
#include <stdexcept>

#include <soapH.h>
#include <Invoices.nsmap>

#include "peers/peer.h"

namespace {

class GSoap final : public bench::Peer {
 public:
  explicit GSoap(std::string url) : url_(std::move(url)) {
    soap_init2(&context_, SOAP_C_UTFSTRING | SOAP_IO_KEEPALIVE,
               SOAP_C_UTFSTRING | SOAP_IO_KEEPALIVE);
    header_.userID = session_.data();
  }
  ~GSoap() override {
    clear();
    soap_done(&context_);
  }
  GSoap(const GSoap&) = delete;
  GSoap& operator=(const GSoap&) = delete;

  void call(const bench::Case& which) override {
    if (last_ != &which) address_ = bench::url_of(url_, which);
    last_ = &which;
    clear();
    context_.header = &header_;
    const int result =
        which.rows == 0
            ? soap_call_inv__getInvoice(&context_, address_.c_str(), nullptr, key_.data(), invoice_)
            : soap_call_inv__searchForInvoices(&context_, address_.c_str(), nullptr, key_.data(),
                                               rows_);
    if ((result != SOAP_OK) != which.is_fault) {
      soap_print_fault(&context_, stderr);
      throw std::runtime_error("gSOAP cannot read the reply");
    }
  }

  std::string seen(const bench::Case& which) override {
    if (which.is_fault) return soap_fault_string(&context_);
    if (which.rows == 0) return invoice_.getInvoiceReturn.number;
    const Orders& all = rows_.searchForInvoicesReturn;
    return bench::facts_of_rows(static_cast<std::size_t>(all.__sizeorder),
                                all.order[all.__sizeorder - 1].number);
  }

 private:
  void clear() {
    soap_destroy(&context_);
    soap_end(&context_);
  }

  std::string url_;
  const bench::Case* last_ = nullptr;
  std::string address_;
  std::string session_{bench::kSession};
  std::string key_{bench::kInvoice};
  soap context_;
  SOAP_ENV__Header header_{};
  inv__getInvoiceResponse invoice_{};
  inv__searchForInvoicesResponse rows_{};
};

}  // namespace

std::unique_ptr<bench::Peer> bench::make_peer(const std::string& url) {
  return std::make_unique<GSoap>(url);
}
