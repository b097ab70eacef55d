// Serves one connection after another on a free port of the loopback address, which it names in its
// first line, until it is killed.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <iostream>

#include <soapH.h>
#include <com.nsmap>

int main() {
  constexpr soap_mode kMode = SOAP_C_UTFSTRING | SOAP_IO_KEEPALIVE;
  soap context(kMode, kMode | SOAP_IO_CHUNK | SOAP_XML_NIL);
  if (!soap_valid_socket(soap_bind(&context, "127.0.0.1", 0, 10))) {
    soap_print_fault(&context, stderr);
    return 1;
  }
  sockaddr_in address{};
  socklen_t size = sizeof(address);
  getsockname(context.master, reinterpret_cast<sockaddr*>(&address), &size);
  std::cout << "http://127.0.0.1:" << ntohs(address.sin_port) << std::endl;
  while (soap_valid_socket(soap_accept(&context))) {
    soap_serve(&context);
    soap_destroy(&context);
    soap_end(&context);
  }
  soap_print_fault(&context, stderr);
  return 1;
}
