// Brings a transport of its own: one that keeps each reply in a file, or gives it back without a
// server. own_transport FILE SESSION INVOICE-UID [SERVER-URL]

#include <bvconn/connectors/invoice/bv_invoice_connector.h>
#include <bvconn/platform/error_numbers.h>
#include <bvconn/platform/platform.h>
#include <bvconn/platform/soap/print.h>

#include <fstream>
#include <iostream>
#include <string>

class FileTransport final : public bvconn::HTTPTransport {
 public:
  FileTransport(std::string file, bool records) : file_(std::move(file)), records_(records) {}
  void Option(std::string_view key, std::string_view value) override { net_->Option(key, value); }
  void setProxy(std::string_view host, std::string_view port) override {
    net_->setProxy(host, port);
  }
  void NoProxy() override { net_->NoProxy(); }
  void SOAPAction(std::string_view value) override { net_->SOAPAction(value); }
  void Timeout(std::int32_t milliseconds) override { net_->Timeout(milliseconds); }
  void Send(std::string_view url, std::string_view text) override {
    if (records_) net_->Send(url, text);
  }
  std::string Receive(std::string_view encoding) override {
    if (records_) std::ofstream(file_, std::ios::binary) << net_->Receive(encoding);
    std::ifstream in(file_, std::ios::binary);
    // Callers decide by the library's numbers; the source and the words are this transport's own.
    if (!in) throw bvconn::Error(bvconn::error_numbers::kBadReply, "FileTransport", "no " + file_);
    return {std::istreambuf_iterator<char>(in), {}};
  }

 private:
  std::shared_ptr<bvconn::HTTPTransport> net_ = bvconn::make_http_transport();
  std::string file_;
  bool records_;
};

int main(int argc, char** argv) {
  if (argc < 4) {
    std::cerr << "usage: own_transport FILE SESSION INVOICE-UID [SERVER-URL]\n";
    return 2;
  }
  // Before the first call; each thread's session makes a transport of its own by this.
  bvconn::platform::Platform own = bvconn::platform::system_platform();
  own.transport = [&] { return std::make_shared<FileTransport>(argv[1], argc > 4); };
  bvconn::platform::install(own);
  try {
    bvconn::BVInvoiceConnector invoices;
    print(invoices.GetInvoice(argc > 4 ? argv[4] : "http://nowhere/", argv[2], argv[3]));
  } catch (const bvconn::Error& error) {
    std::cerr << bvconn::hex_number(error.number) << ": " << error.description << '\n';
    return 1;
  }
}
