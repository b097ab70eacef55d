#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/sandbox_process.h"
#include "sandbox/shared_place.h"
#include "sandbox/store/documents_tree.h"
#include "sandbox/store/store.h"

namespace bvconn::test {
namespace {

using ::testing::HasSubstr;
using Processes = std::vector<std::unique_ptr<SandboxProcess>>;

class SharedStore : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!shared_place_missing().empty()) GTEST_SKIP() << shared_place_missing();
    place_ = new_shared_place();
  }

  std::unique_ptr<SandboxProcess> start_one() {
    return std::make_unique<SandboxProcess>(
        std::vector<std::string>{"--port", "0", "--db", place_});
  }
  /// All at once, so that they meet at the empty database.
  Processes start(std::size_t count) {
    Processes processes(count);
    std::vector<std::jthread> starting;
    for (auto& each : processes) starting.emplace_back([&] { each = start_one(); });
    return starting.clear(), std::move(processes);
  }
  const std::string& place() const { return place_; }

  std::string place_;
};

/// Tests that share two processes on one store, and leave it to the next as it is.
class TwoProcesses : public SharedStore {
 protected:
  static void TearDownTestSuite() { both().clear(); }

  void SetUp() override {
    SharedStore::SetUp();
    if (!IsSkipped() && both().empty()) both() = start(2);
  }
  static SandboxProcess& first() { return *both()[0]; }
  static SandboxProcess& second() { return *both()[1]; }

 private:
  static Processes& both() {
    static Processes both;
    return both;
  }
};

std::string between(const std::string& text, std::string_view before, std::string_view after) {
  const auto begin = text.find(before);
  if (begin == std::string::npos) return {};
  const auto from = text.find('>', begin) + 1;
  return text.substr(from, text.find(after, from) - from);
}

RawReply admin(SandboxProcess& process, std::string_view method, std::string_view path,
               std::string_view body = "") {
  return exchange(process.port(), http_request(method, path, "", body));
}

/// Saves a new project with this name and lines, and gives its key; "" when the call failed.
std::string save_project(SandboxProcess& process, const std::string& name) {
  std::string lines;
  for (int i = 0; i < 12; ++i) {
    lines += "<Line><GID>" + name + "-" + std::to_string(i) + "</GID></Line>";
  }
  const RawReply reply =
      process.soap("urn:ProjectService", "save",
                   "<Project><Name>" + name + "</Name><Lines>" + lines + "</Lines></Project>");
  return reply.status == 200 ? between(reply.body, "<GID", "</GID") : std::string();
}

std::string project(SandboxProcess& process, const std::string& gid) {
  return process
      .soap("urn:ProjectService", "getProject", "<GID xsi:type=\"xsd:string\">" + gid + "</GID>")
      .body;
}

TEST_F(SharedStore, WhoeverReadsWaitsForNoWriterAndSeesOneMoment) {
  sandbox::Store writer(place(), std::nullopt);
  sandbox::Store reader(place(), std::nullopt);
  const auto status = [&] { return reader.invoice("INV-1001")->status; };
  const auto begin = std::chrono::steady_clock::now();
  {
    sandbox::Transaction writing = writer.transaction();
    writer.close_invoice("INV-1001");
    sandbox::Transaction reading = reader.transaction(sandbox::Turn::kNone);
    EXPECT_EQ(status(), "OPEN");
    writing.commit();
    EXPECT_EQ(status(), "OPEN");
    reading.commit();
  }
  EXPECT_EQ(status(), "CLOSED");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4))
      << "who waits for a writer gives up after five seconds";
}

TEST_F(SharedStore, WhoeverOnlyReadsCannotWrite) {
  sandbox::Store store(place(), std::nullopt);
  {
    const sandbox::Transaction reading = store.transaction(sandbox::Turn::kNone);
    EXPECT_THROW(store.close_invoice("INV-1001"), sandbox::DatabaseError);
  }
  EXPECT_EQ(store.invoice("INV-1001")->status, "OPEN");
  EXPECT_NO_THROW(store.close_invoice("INV-1001"));
  EXPECT_EQ(store.invoice("INV-1001")->status, "CLOSED");
}

TEST_F(SharedStore, AProcessGoesOnReadingWhileItsWriterWaitsForAnother) {
  const auto process = start_one();
  RawClient saver(process->port());
  sandbox::Store other(place(), std::nullopt);
  {
    sandbox::Transaction writing = other.transaction();
    ASSERT_TRUE(saver.send(http_request(
        "POST", "/soap", "Content-Type: text/xml\r\nSOAPAction: \"urn:ProjectService\"\r\n",
        envelope_text("urn:ProjectService", "save", "<Project><Name>It waits</Name></Project>"))));
    // Time for it to begin to wait.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_THAT(project(*process, "PRJ-3001"), HasSubstr("PRJ-3001-1"));
    writing.commit();
  }
  const RawReply saved = saver.receive();
  EXPECT_EQ(saved.status, 200) << "it gave up before the reader was answered: " << saved.body;
}

TEST_F(SharedStore, ProcessesThatBeginTogetherShareOneStore) {
  const Processes processes = start(4);
  for (const auto& each : processes) ASSERT_NE(each->port(), 0);
  const std::string gid = save_project(*processes[0], "Depot");
  ASSERT_NE(gid, "");
  for (const auto& each : processes) EXPECT_THAT(project(*each, gid), HasSubstr("Depot"));
}

TEST_F(SharedStore, OneThatBeginsWaitsForAnotherLongerThanARequestDoes) {
  sandbox::Store(place(), std::nullopt);
  sandbox::Database other(place());
  sandbox::Transaction making(other);
  const std::jthread made([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(5'500));
    making.commit();
  });
  EXPECT_NO_THROW(sandbox::Store(place(), std::nullopt));
}

TEST_F(TwoProcesses, ALoginOfOneIsGoodAtTheOther) {
  const std::string token = first().login();
  ASSERT_NE(token, "");
  EXPECT_EQ(second()
                .dal("AuthenticationService/GetDisabledServices", R"({"arguments":[]})", token)
                .status,
            200);
  EXPECT_EQ(
      second().dal("AuthenticationService/GetDisabledServices", R"({"arguments":[]})", "0").status,
      401);
}

TEST_F(TwoProcesses, WhatOneDisablesTheOtherTells) {
  admin(first(), "POST", "/admin/disabled", "urn:HeartBeatService.beat|");
  EXPECT_EQ(admin(second(), "GET", "/admin/disabled").body, "urn:HeartBeatService.beat|");
  EXPECT_EQ(
      second()
          .dal("AuthenticationService/GetDisabledServices", R"({"arguments":[]})", second().login())
          .body,
      "urn:HeartBeatService.beat|");
}

TEST_F(TwoProcesses, ASnapshotOfOneIsRestoredByTheOther) {
  const std::string kept = save_project(first(), "Depot");
  EXPECT_EQ(admin(first(), "POST", "/admin/snapshots/depot").status, 200);
  const std::string later = save_project(first(), "Bridge");
  ASSERT_NE(kept, later);
  EXPECT_THAT(admin(second(), "GET", "/admin/snapshots").body, HasSubstr(R"("name":"depot")"));
  EXPECT_EQ(admin(second(), "POST", "/admin/restore/depot").status, 200);
  EXPECT_THAT(project(first(), kept), HasSubstr("Depot"));
  EXPECT_THAT(project(first(), later), HasSubstr("There is no project"));
  // Keys go on from where they were.
  EXPECT_EQ(save_project(second(), "Tower"), later);
}

TEST_F(TwoProcesses, AResetLeavesWhatANewStoreHoldsAndWhoHasLoggedIn) {
  const std::string token = first().login();
  const std::string gid = save_project(first(), "Depot");
  EXPECT_EQ(admin(second(), "POST", "/admin/snapshots/depot").status, 200);
  EXPECT_EQ(admin(second(), "POST", "/admin/reset").status, 200);
  EXPECT_THAT(project(first(), gid), HasSubstr("There is no project"));
  EXPECT_THAT(project(first(), "PRJ-3001"), HasSubstr("PRJ-3001-1"));
  EXPECT_EQ(
      first().dal("AuthenticationService/GetDisabledServices", R"({"arguments":[]})", token).status,
      200);
  // A snapshot outlives a reset.
  EXPECT_EQ(admin(first(), "POST", "/admin/restore/depot").status, 200);
  EXPECT_THAT(project(second(), gid), HasSubstr("Depot"));
}

TEST_F(SharedStore, SnapshotsThatCannotBeAreRefusedInOneLine) {
  const auto process = start_one();
  ASSERT_EQ(admin(*process, "POST", "/admin/snapshots/before").status, 200);
  EXPECT_EQ(admin(*process, "POST", "/admin/restore/befor").body,
            "There is no snapshot 'befor'; did you mean before?\n");
  EXPECT_EQ(admin(*process, "POST", "/admin/snapshots/a%27b").body,
            "A snapshot's name has 1 to 64 letters, digits, '.', '_' or '-' in it, not 'a'b'\n");
  EXPECT_EQ(admin(*process, "DELETE", "/admin/snapshots/before").status, 200);
  EXPECT_EQ(admin(*process, "DELETE", "/admin/snapshots/before").status, 400);
  EXPECT_EQ(admin(*process, "GET", "/admin/snapshots").body, R"({"snapshots":[]})");
}

/// Clients that save one project after another, and the keys that they were given.
class Savers {
 public:
  explicit Savers(const Processes& processes, int clients) {
    for (std::size_t i = 0; i < processes.size(); ++i) {
      for (int client = 0; client < clients; ++client) {
        const std::string name = "P" + std::to_string(i) + "c" + std::to_string(client);
        threads_.emplace_back([this, &process = processes[i], name] { save(*process, name); });
      }
    }
  }

  /// Ends them and gives the keys.
  std::vector<std::string> end() {
    ending_ = true;
    threads_.clear();
    return keys_;
  }

 private:
  void save(SandboxProcess& process, const std::string& name) {
    for (int i = 0; !ending_; ++i) {
      const std::string key = save_project(process, name + "n" + std::to_string(i));
      if (key.empty()) continue;
      const std::lock_guard lock(mutex_);
      keys_.push_back(key);
    }
  }

  std::atomic<bool> ending_ = false;
  std::mutex mutex_;
  std::vector<std::string> keys_;
  std::vector<std::jthread> threads_;
};

/// Documents of which the tables say another thing than their bodies do.
std::vector<std::string> halves(const std::string& place) {
  sandbox::Database database(place);
  std::vector<std::string> found;
  sandbox::Statement documents(database, "SELECT gid, body, revision FROM documents ORDER BY gid");
  while (documents.step()) {
    std::set<std::string> in_body;
    for (const SoapNode& line : sandbox::lines_of(node_from_xml(documents.text(1)))) {
      if (!sandbox::line_key(line).empty()) in_body.insert(sandbox::line_key(line));
    }
    std::set<std::string> in_table;
    sandbox::Statement lines(database,
                             "SELECT line_gid FROM document_lines WHERE document_gid = ?");
    lines.bind(documents.text(0));
    while (lines.step()) in_table.insert(lines.text(0));
    if (in_body != in_table) found.push_back(documents.text(0));
  }
  return found;
}

std::vector<std::string> missing_in(const std::string& place,
                                    const std::vector<std::string>& keys) {
  sandbox::Database database(place);
  std::vector<std::string> missing;
  for (const std::string& key : keys) {
    if (!sandbox::Documents(database).find(key)) missing.push_back(key);
  }
  return missing;
}

/// Tests with so many processes, which those of one number share.
class SharedStoreUnderLoad : public SharedStore, public ::testing::WithParamInterface<int> {
 protected:
  static void TearDownTestSuite() { all().clear(); }

  void SetUp() override {
    SharedStore::SetUp();
    if (IsSkipped()) return;
    auto& [place, processes] = all()[GetParam()];
    if (processes.empty()) {
      place = place_;
      processes = start(static_cast<std::size_t>(GetParam()));
    }
    place_ = place;
  }
  Processes& processes() { return all()[GetParam()].second; }

 private:
  /// By their number: the place of the store, and the processes.
  static std::map<int, std::pair<std::string, Processes>>& all() {
    static std::map<int, std::pair<std::string, Processes>> all;
    return all;
  }
};

TEST_P(SharedStoreUnderLoad, NoKeyIsGivenOutTwice) {
  Savers savers(processes(), 2);
  std::this_thread::sleep_for(std::chrono::seconds(3));
  const std::vector<std::string> keys = savers.end();
  const std::set<std::string> different(keys.begin(), keys.end());
  EXPECT_GT(keys.size(), 10U);
  EXPECT_EQ(different.size(), keys.size());
  EXPECT_THAT(missing_in(place(), keys), ::testing::IsEmpty());
  std::cout << keys.size() << " projects saved by " << GetParam() << " processes in 3 seconds\n";
}

TEST_P(SharedStoreUnderLoad, AProcessKilledInTheMiddleOfASaveLeavesNothingHalf) {
  std::vector<std::string> keys;
  for (int round = 0; round < 4; ++round) {
    Savers savers(processes(), 2);
    std::this_thread::sleep_for(std::chrono::milliseconds(500 + 37 * round));
    // Its clients get no answers from here on; those of the others go on.
    const std::size_t victim = static_cast<std::size_t>(round) % processes().size();
    ::kill(processes()[victim]->process(), SIGKILL);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const std::vector<std::string> saved = savers.end();
    keys.insert(keys.end(), saved.begin(), saved.end());
    processes()[victim] = start_one();
    ASSERT_NE(processes()[victim]->port(), 0);
    EXPECT_NE(save_project(*processes()[victim], "After" + std::to_string(round)), "");
  }
  EXPECT_GT(keys.size(), 10U);
  const std::set<std::string> different(keys.begin(), keys.end());
  EXPECT_EQ(different.size(), keys.size());
  // What was answered is there, and all that is there is whole.
  EXPECT_THAT(missing_in(place(), keys), ::testing::IsEmpty());
  EXPECT_THAT(halves(place()), ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Processes, SharedStoreUnderLoad, ::testing::Values(2, 4));

}  // namespace
}  // namespace bvconn::test
