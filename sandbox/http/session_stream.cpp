#include <boost/asio/buffer.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <exception>
#include <utility>

#include "sandbox/http/session.h"

// A reply that goes on. Between two looks for news it takes a timer and a read that waits, so a
// reader costs no worker.
namespace bvconn::sandbox {
namespace asio = boost::asio;

namespace {

/// From one look for news to the next.
constexpr std::chrono::milliseconds kNewsPause{250};

/// Nothing where the stream has failed.
std::optional<std::string> news_of(ReplyStream& stream) {
  try {
    return stream.next();
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace

void Session::follow(const Step& step) {
  if (!following_) {
    following_ = true;
    place_.reset();
    watch_reader();
  }
  if (reader_gone_ || workers_.draining()) return stop_following();
  auto work = [self = shared_from_this(), stream = step.stream]() mutable {
    auto news = news_of(*stream);
    const auto executor = self->stream_.get_executor();
    asio::post(executor, [self = std::move(self), news = std::move(news)]() mutable {
      self->send_news(std::move(news));
    });
  };
  workers_.run(std::move(work));
}

/// A reader has nothing more to say; that it goes is noticed without sending it anything.
void Session::watch_reader() {
  stream_.async_read_some(asio::buffer(drained_),
                          [self = shared_from_this()](ErrorCode error, std::size_t /*bytes*/) {
                            if (!error) return self->watch_reader();
                            self->reader_gone_ = true;
                            self->timer_.cancel();
                          });
}

void Session::send_news(std::optional<std::string> news) {
  if (!news || reader_gone_) return stop_following();
  if (news->empty()) return wait(kNewsPause, &Session::do_step);
  outgoing_ = std::move(*news);
  // A reader that does not take it in is let go; it may come again and go on where it was.
  limit_to(limits_.reply);
  asio::async_write(stream_, asio::buffer(outgoing_),
                    [self = shared_from_this()](ErrorCode error, std::size_t /*bytes*/) {
                      if (error || self->reader_gone_) return self->stop_following();
                      self->wait(kNewsPause, &Session::do_step);
                    });
}

/// A read may still wait for the reader, so there is no other one for the end of its data.
void Session::stop_following() {
  timer_.cancel();
  ErrorCode ignored;
  stream_.socket().close(ignored);
}

}  // namespace bvconn::sandbox
