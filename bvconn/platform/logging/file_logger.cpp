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

/// Appends a number with so many digits.
void append_digits(std::string& line, std::int64_t number, std::size_t digits) {
  const std::size_t end = line.append(digits, '0').size();
  for (std::size_t i = 1; i <= digits; ++i, number /= 10) {
    line[end - i] = static_cast<char>('0' + number % 10);
  }
}

/// "2007-01-05T10:11:12.250+0100": local time, with what it takes to compare it with a server's.
class Stamp {
 public:
  std::string_view now() {
    const detail::LocalMoment now = detail::local_now();
    const std::int64_t wall_ms = now.wall_ms();
    const std::int64_t second = (wall_ms - (wall_ms % 1000 + 1000) % 1000) / 1000;
    if (text_.empty() || second != second_ || now.zone.offset_s != offset_s_) {
      second_ = second;
      offset_s_ = now.zone.offset_s;
      write_all_but_milliseconds();
    }
    std::string digits;
    append_digits(digits, wall_ms - second * 1000, 3);
    return text_.replace(kMillisecondsAt, 3, digits);
  }

 private:
  static constexpr std::size_t kMillisecondsAt = 20;

  void write_all_but_milliseconds() {
    struct Part {
      std::int32_t value;
      std::size_t digits;
      char before;
    };
    constexpr Date k1970{25'569LL * 24 * 60 * 60 * 1000};
    const CivilDate date = to_civil(Date{k1970.milliseconds + second_ * 1000});
    text_.clear();
    for (const Part& part :
         {Part{date.year, 4, '\0'}, Part{date.month, 2, '-'}, Part{date.day, 2, '-'},
          Part{date.hour, 2, 'T'}, Part{date.minute, 2, ':'}, Part{date.second, 2, ':'}}) {
      if (part.before != '\0') text_.push_back(part.before);
      append_digits(text_, part.value, part.digits);
    }
    text_ += ".000";
    const std::int64_t minutes = std::abs(offset_s_) / 60;
    text_.push_back(offset_s_ < 0 ? '-' : '+');
    append_digits(text_, minutes / 60 * 100 + minutes % 60, 4);
  }

  std::string text_;
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
