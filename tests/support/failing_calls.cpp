#include "support/failing_calls.h"

#include <curl/curl.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <array>
#include <cerrno>
#include <cstdarg>

namespace bvconn::test {
namespace {

struct Plan {
  Calls calls = Calls::kFiles;
  std::size_t number = 0;  ///< 0: none is to fail
  std::size_t way = 0;
  std::size_t made = 0;
  bool struck = false;
  bool was_asked_again = false;
  const char* name = "";
  int code = 0;
};

constinit thread_local Plan plan;

/// Whether this call is the one that is to fail; then `struck_code` says how.
template <std::size_t kWays>
bool strikes(Calls calls, const char* name, const std::array<int, kWays>& ways) {
  if (plan.number == 0 || plan.calls != calls || ++plan.made != plan.number) return false;
  if (plan.way >= kWays) return false;
  plan.struck = true;
  plan.name = name;
  plan.code = ways[plan.way];
  if (calls == Calls::kFiles && plan.code > 0) errno = plan.code;
  return true;
}

template <std::size_t kWays>
bool file_fails(const char* name, const std::array<int, kWays>& ways) {
  return strikes(Calls::kFiles, name, ways);
}

/// Whether this call asks once more for what a `statx` that failed was asked for. Where the file
/// was the reason it fails too; an old system that has no `statx` answers it.
bool is_asked_again() {
  if (!plan.struck || plan.was_asked_again || plan.name != std::string_view("statx")) return false;
  plan.was_asked_again = true;
  if (plan.code == ENOSYS) return false;
  errno = plan.code;
  return true;
}

template <std::size_t kWays>
bool curl_fails(const char* name, const std::array<int, kWays>& ways) {
  return strikes(Calls::kLibcurl, name, ways);
}

}  // namespace

FailingCall::FailingCall(Calls calls, std::size_t number, std::size_t way) noexcept {
  plan = Plan{.calls = calls, .number = number, .way = way};
}

FailingCall::~FailingCall() {
  plan.number = 0;
}

bool FailingCall::has_struck() noexcept {
  return plan.struck;
}

std::string_view struck_call() noexcept {
  return plan.name;
}

int struck_code() noexcept {
  return plan.code;
}

std::string struck() {
  return std::string(plan.name) + " with " + std::to_string(plan.code);
}

}  // namespace bvconn::test

// The linker's option --wrap gives these names their meaning.
extern "C" {

int __real_open(const char* path, int flags, ...);
ssize_t __real_read(int file, void* bytes, std::size_t size);
ssize_t __real_write(int file, const void* bytes, std::size_t size);
int __real_close(int file);
int __real_rename(const char* from, const char* to);
int __real_fsync(int file);
int __real_stat(const char* path, struct stat* status);
int __real_fstat(int file, struct stat* status);
int __real_statx(int folder, const char* path, int flags, unsigned mask, struct statx* status);
int __real_mkdir(const char* path, mode_t mode);
int __real_flock(int file, int kind);
int __real_unlink(const char* path);
int __real_fchown(int file, uid_t user, gid_t group);
int __real_fchmod(int file, mode_t mode);
char* __real_realpath(const char* path, char* real);
int __real_poll(struct pollfd* files, nfds_t count, int time_out);

CURLcode __real_curl_global_init(long flags);
CURL* __real_curl_easy_init();
CURLcode __real_curl_easy_setopt(CURL* handle, int option, ...);
CURLcode __real_curl_easy_perform(CURL* handle);
CURLcode __real_curl_easy_getinfo(CURL* handle, int info, ...);
struct curl_slist* __real_curl_slist_append(struct curl_slist* list, const char* text);
CURLU* __real_curl_url();
CURLUcode __real_curl_url_set(CURLU* url, CURLUPart part, const char* text, unsigned flags);

int __wrap_open(const char* path, int flags, ...) {
  std::va_list arguments;
  va_start(arguments, flags);
  const auto mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : mode_t{0};
  va_end(arguments);
  static constexpr std::array kWays{EACCES, ENOENT, EMFILE, ENOSPC, EROFS, EINTR};
  if (bvconn::test::file_fails("open", kWays)) return -1;
  return __real_open(path, flags, mode);
}

ssize_t __wrap_read(int file, void* bytes, std::size_t size) {
  static constexpr std::array kWays{EIO, EINTR, EISDIR, bvconn::test::kHalf};
  if (!bvconn::test::file_fails("read", kWays)) return __real_read(file, bytes, size);
  return bvconn::test::struck_code() > 0 ? -1 : __real_read(file, bytes, 7);
}

ssize_t __wrap_write(int file, const void* bytes, std::size_t size) {
  static constexpr std::array kWays{ENOSPC, EIO, EFBIG, EDQUOT, EINTR, bvconn::test::kHalf};
  if (!bvconn::test::file_fails("write", kWays)) return __real_write(file, bytes, size);
  return bvconn::test::struck_code() > 0 ? -1 : __real_write(file, bytes, (size + 1) / 2);
}

int __wrap_close(int file) {
  static constexpr std::array kWays{EIO, ENOSPC, EINTR};
  if (!bvconn::test::file_fails("close", kWays)) return __real_close(file);
  // Linux lets go of the file whatever it says.
  __real_close(file);
  errno = bvconn::test::struck_code();
  return -1;
}

int __wrap_rename(const char* from, const char* to) {
  static constexpr std::array kWays{EACCES, ENOSPC, EXDEV, EROFS, EISDIR};
  return bvconn::test::file_fails("rename", kWays) ? -1 : __real_rename(from, to);
}

int __wrap_fsync(int file) {
  static constexpr std::array kWays{EIO, ENOSPC, EINVAL};
  return bvconn::test::file_fails("fsync", kWays) ? -1 : __real_fsync(file);
}

int __wrap_stat(const char* path, struct stat* status) {
  static constexpr std::array kWays{EACCES, ENOENT, EIO};
  if (bvconn::test::is_asked_again()) return -1;
  return bvconn::test::file_fails("stat", kWays) ? -1 : __real_stat(path, status);
}

int __wrap_fstat(int file, struct stat* status) {
  static constexpr std::array kWays{EIO, EOVERFLOW};
  if (bvconn::test::is_asked_again()) return -1;
  return bvconn::test::file_fails("fstat", kWays) ? -1 : __real_fstat(file, status);
}

int __wrap_statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) {
  static constexpr std::array kWays{ENOSYS, EACCES, EIO};
  return bvconn::test::file_fails("statx", kWays) ? -1
                                                  : __real_statx(folder, path, flags, mask, status);
}

int __wrap_mkdir(const char* path, mode_t mode) {
  static constexpr std::array kWays{EACCES, ENOSPC, EROFS};
  return bvconn::test::file_fails("mkdir", kWays) ? -1 : __real_mkdir(path, mode);
}

int __wrap_flock(int file, int kind) {
  static constexpr std::array kWays{EWOULDBLOCK, EINTR, ENOLCK};
  return bvconn::test::file_fails("flock", kWays) ? -1 : __real_flock(file, kind);
}

int __wrap_unlink(const char* path) {
  static constexpr std::array kWays{EACCES, EROFS};
  return bvconn::test::file_fails("unlink", kWays) ? -1 : __real_unlink(path);
}

int __wrap_fchown(int file, uid_t user, gid_t group) {
  static constexpr std::array kWays{EPERM, EIO};
  return bvconn::test::file_fails("fchown", kWays) ? -1 : __real_fchown(file, user, group);
}

int __wrap_fchmod(int file, mode_t mode) {
  static constexpr std::array kWays{EPERM, EIO};
  return bvconn::test::file_fails("fchmod", kWays) ? -1 : __real_fchmod(file, mode);
}

char* __wrap_realpath(const char* path, char* real) {
  static constexpr std::array kWays{EACCES, ENOENT, ENOMEM};
  return bvconn::test::file_fails("realpath", kWays) ? nullptr : __real_realpath(path, real);
}

int __wrap_poll(struct pollfd* files, nfds_t count, int time_out) {
  static constexpr std::array kWays{EINTR, ENOMEM};
  return bvconn::test::file_fails("poll", kWays) ? -1 : __real_poll(files, count, time_out);
}

CURLcode __wrap_curl_global_init(long flags) {
  static constexpr std::array<int, 2> kWays{CURLE_OUT_OF_MEMORY, CURLE_FAILED_INIT};
  if (!bvconn::test::curl_fails("curl_global_init", kWays)) return __real_curl_global_init(flags);
  return static_cast<CURLcode>(bvconn::test::struck_code());
}

CURL* __wrap_curl_easy_init() {
  static constexpr std::array<int, 1> kWays{CURLE_OUT_OF_MEMORY};
  return bvconn::test::curl_fails("curl_easy_init", kWays) ? nullptr : __real_curl_easy_init();
}

// Whatever type the argument has, it is as wide as a pointer. The option is an int here, since
// va_start wants what a type of less than that is passed as.
static_assert(sizeof(long) == sizeof(void*) && sizeof(curl_off_t) == sizeof(void*));

CURLcode __wrap_curl_easy_setopt(CURL* handle, int option, ...) {
  std::va_list arguments;
  va_start(arguments, option);
  void* const value = va_arg(arguments, void*);
  va_end(arguments);
  static constexpr std::array<int, 3> kWays{CURLE_OUT_OF_MEMORY, CURLE_UNKNOWN_OPTION,
                                            CURLE_BAD_FUNCTION_ARGUMENT};
  if (!bvconn::test::curl_fails("curl_easy_setopt", kWays)) {
    return __real_curl_easy_setopt(handle, option, value);
  }
  return static_cast<CURLcode>(bvconn::test::struck_code());
}

CURLcode __wrap_curl_easy_perform(CURL* handle) {
  static constexpr std::array<int, 11> kWays{
      CURLE_OUT_OF_MEMORY,         CURLE_COULDNT_RESOLVE_HOST, CURLE_COULDNT_CONNECT,
      CURLE_OPERATION_TIMEDOUT,    CURLE_SSL_CONNECT_ERROR,    CURLE_PEER_FAILED_VERIFICATION,
      CURLE_COULDNT_RESOLVE_PROXY, CURLE_SEND_ERROR,           CURLE_RECV_ERROR,
      CURLE_FAILED_INIT,           CURLE_BAD_FUNCTION_ARGUMENT};
  if (!bvconn::test::curl_fails("curl_easy_perform", kWays))
    return __real_curl_easy_perform(handle);
  return static_cast<CURLcode>(bvconn::test::struck_code());
}

CURLcode __wrap_curl_easy_getinfo(CURL* handle, int info, ...) {
  std::va_list arguments;
  va_start(arguments, info);
  void* const place = va_arg(arguments, void*);
  va_end(arguments);
  static constexpr std::array<int, 2> kWays{CURLE_UNKNOWN_OPTION, CURLE_BAD_FUNCTION_ARGUMENT};
  if (!bvconn::test::curl_fails("curl_easy_getinfo", kWays)) {
    return __real_curl_easy_getinfo(handle, info, place);
  }
  return static_cast<CURLcode>(bvconn::test::struck_code());
}

struct curl_slist* __wrap_curl_slist_append(struct curl_slist* list, const char* text) {
  static constexpr std::array<int, 1> kWays{CURLE_OUT_OF_MEMORY};
  if (bvconn::test::curl_fails("curl_slist_append", kWays)) return nullptr;
  return __real_curl_slist_append(list, text);
}

CURLU* __wrap_curl_url() {
  static constexpr std::array<int, 1> kWays{CURLE_OUT_OF_MEMORY};
  return bvconn::test::curl_fails("curl_url", kWays) ? nullptr : __real_curl_url();
}

CURLUcode __wrap_curl_url_set(CURLU* url, CURLUPart part, const char* text, unsigned flags) {
  static constexpr std::array<int, 2> kWays{CURLUE_OUT_OF_MEMORY, CURLUE_BAD_PORT_NUMBER};
  if (!bvconn::test::curl_fails("curl_url_set", kWays)) {
    return __real_curl_url_set(url, part, text, flags);
  }
  return static_cast<CURLUcode>(bvconn::test::struck_code());
}

}  // extern "C"
