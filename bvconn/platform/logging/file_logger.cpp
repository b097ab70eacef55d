#include <array>
#include <charconv>
#include <cstdlib>
#include <typeinfo>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/files.h"
#include "bvconn/platform/local_time.h"
#include "bvconn/platform/logging/append_file.h"
#include "bvconn/platform/logging/own_logger.h"
#include "bvconn/platform/logging/session_logger.h"
#include "bvconn/platform/thread_slot.h"

namespace bvconn {

SessionLogger::~SessionLogger() = default;

std::uint64_t SessionLogger::LogMaxBytes() const {
  return 0;
}

namespace {

/// The bit of the mask that text lines without a level hang on.
constexpr std::int32_t kInfoBit = 8;

/// "24" or "0x18"; anything else asks for nothing.
std::int32_t mask_of(std::string_view text) {
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = 16;
  }
  std::uint32_t bits = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, bits, base);
  return result.ec == std::errc() && result.ptr == end ? static_cast<std::int32_t>(bits) : 0;
}

/// "1000000"; what is no such number leaves the bound as it is without the variable, since a slip
/// must not let a file grow for ever.
std::uint64_t max_bytes_of(std::string_view text) {
  constexpr std::uint64_t kDefault = std::uint64_t{64} << 20;
  std::uint64_t bytes = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, bytes);
  return result.ec == std::errc() && result.ptr == end ? bytes : kDefault;
}

std::string path_of(const char* variable, std::string_view name) {
  std::string path = detail::environment(variable);
  return path.empty() ? detail::user_file(detail::UserFolder::kState, name) : path;
}

/// "2007-01-05T10:11:12.250+0100": local time, with what it takes to compare it with a server's. It
/// is written anew where the second is another, and takes no memory.
class Stamp {
 public:
  std::string_view now() {
    const detail::LocalMoment now = detail::local_now();
    const std::int64_t wall_ms = now.wall_ms();
    const std::int64_t second = (wall_ms - (wall_ms % 1000 + 1000) % 1000) / 1000;
    if (!is_written_ || second != second_ || now.zone.offset_s != offset_s_) {
      second_ = second;
      offset_s_ = now.zone.offset_s;
      write_all_but_milliseconds();
    }
    write(20, 3, wall_ms - second * 1000);
    return {text_.data(), text_.size()};
  }

 private:
  void write_all_but_milliseconds() {
    constexpr Date k1970{25'569LL * 24 * 60 * 60 * 1000};
    const CivilDate date = to_civil(Date{k1970.milliseconds + second_ * 1000});
    write(0, 4, date.year);
    write(5, 2, date.month);
    write(8, 2, date.day);
    write(11, 2, date.hour);
    write(14, 2, date.minute);
    write(17, 2, date.second);
    const std::int64_t minutes = std::abs(offset_s_) / 60;
    text_[23] = offset_s_ < 0 ? '-' : '+';
    write(24, 4, minutes / 60 * 100 + minutes % 60);
    is_written_ = true;
  }

  /// So many digits at a place.
  void write(std::size_t at, std::size_t digits, std::int64_t number) {
    for (std::size_t i = digits; i-- > 0; number /= 10) {
      text_[at + i] = static_cast<char>('0' + number % 10);
    }
  }

  std::array<char, 28> text_{'0', '0', '0', '0', '-', '0', '0', '-', '0', '0', 'T', '0', '0', ':',
                             '0', '0', ':', '0', '0', '.', '0', '0', '0', '+', '0', '0', '0', '0'};
  bool is_written_ = false;
  std::int64_t second_ = 0;  ///< on the wall
  std::int64_t offset_s_ = 0;
};

class FileLogger final : public detail::OwnLogger {
 public:
  FileLogger()
      : mask_(mask_of(detail::environment("BVCONN_LOG_MASK"))),
        log_(path_of("BVCONN_LOG_FILE", "bvconn/bvconn.log"),
             max_bytes_of(detail::environment("BVCONN_LOG_MAX_BYTES"))),
        trace_path_(path_of("BVCONN_TRACE_FILE", "bvconn/traffic.log")) {}

  ~FileLogger() override { release_errors(); }

  // Who asks for a path is going to write there, and not everybody makes folders.
  std::string LogFilePath() override {
    write_lines();
    detail::make_folders_of(log_.path());
    return log_.path();
  }
  std::string TracingFilePath() override {
    detail::make_folders_of(trace_path_);
    return trace_path_;
  }
  std::int32_t LogMask() override { return mask_; }
  bool writes(std::int32_t level) const noexcept override {
    return level == 0 ? mask_ != 0 : (mask_ & level) != 0;
  }
  bool writes_info() const noexcept override { return (mask_ & kInfoBit) != 0; }
  std::uint64_t LogMaxBytes() const override { return log_.max_bytes(); }

  void LogError(std::string_view cls, std::string_view method, const Error& error,
                std::int32_t line) override {
    begin_line("ERROR", cls, method);
    lines_.append(" ").append(hex_number(error.number)).append(" ");
    detail::append_escaped(lines_, error.source);
    lines_ += ": ";
    detail::append_escaped(lines_, error.description);
    if (line != 0) lines_.append(" (line ").append(std::to_string(line)).append(")");
    end_line();
    if (holds_ == 0) write_lines();
  }

  // Writing is where a thread can be cancelled, which must not happen here.
  void hold_errors() noexcept override { ++holds_; }
  void release_errors() noexcept override {
    if (holds_ != 0) --holds_;
    if (complete_ == 0) return;
    const detail::Uncancelled thread;
    try {
      write_lines();
    } catch (...) {
      // No memory for the path: a log that cannot be written is silent.
    }
  }

  void LogWarning(std::string_view cls, std::string_view method, std::string_view text,
                  std::int32_t code) override {
    write("WARNING", cls, method, with_code(text, code));
  }

  void LogInfo(std::string_view cls, std::string_view method, std::string_view text,
               std::int32_t code) override {
    if (writes_info()) {
      write("INFO", cls, method, with_code(text, code));
    }
  }

  void LogAtLevel(std::int32_t level, std::string_view cls, std::string_view method,
                  std::string_view text, std::int32_t code) override {
    if (writes(level)) {
      write("LEVEL" + std::to_string(level), cls, method, with_code(text, code));
    }
  }

  void EnterMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    if (writes(level)) {
      write("ENTER", cls, method, "");
    }
  }

  void ExitMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    if (writes(level)) {
      write("EXIT", cls, method, "");
    }
  }

 private:
  static std::string with_code(std::string_view text, std::int32_t code) {
    std::string result(text);
    if (code != 0) {
      result.append(" (code ").append(std::to_string(code)).append(")");
    }
    return result;
  }

  void write(std::string_view kind, std::string_view cls, std::string_view method,
             std::string_view text) {
    begin_line(kind, cls, method);
    append_part(text);
    end_line();
    write_lines();
  }

  /// Puts a line behind those that wait; what a line that failed half-way has left is dropped.
  void begin_line(std::string_view kind, std::string_view cls, std::string_view method) {
    lines_.resize(complete_);
    lines_.append(stamp_.now())
        .append(" [")
        .append(std::to_string(detail::thread_number()))
        .append("] ");
    lines_.append(kind);
    append_part(cls);
    append_part(method);
  }

  void append_part(std::string_view part) {
    if (part.empty()) return;
    lines_.push_back(' ');
    detail::append_escaped(lines_, part);
  }

  void end_line() {
    lines_.push_back('\n');
    complete_ = lines_.size();
  }

  /// A log that cannot be written must not fail the call that it tells of.
  void write_lines() {
    if (complete_ == 0) return;
    const std::size_t size = std::exchange(complete_, 0);
    log_.append(std::string_view(lines_).substr(0, size));
    if (lines_.capacity() > kKeptCapacity) lines_ = std::string();
  }

  static constexpr std::size_t kKeptCapacity = 16'384;

  std::int32_t mask_;
  AppendedFile log_;
  std::string trace_path_;
  Stamp stamp_;
  std::string lines_;         ///< not written yet, and what is behind them
  std::size_t complete_ = 0;  ///< bytes of whole lines in it
  int holds_ = 0;
};

}  // namespace

// A cast that looks for the class among all of its bases costs more than most of the lines that are
// not written.
detail::OwnLogger* detail::own_logger_of(SessionLogger& logger) noexcept {
  return typeid(logger) == typeid(FileLogger) ? static_cast<FileLogger*>(&logger) : nullptr;
}

std::shared_ptr<SessionLogger> make_file_logger() {
  return std::make_shared<FileLogger>();
}

}  // namespace bvconn
