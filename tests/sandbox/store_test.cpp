#include "sandbox/store/store.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "sandbox/store/documents_tree.h"
#include "sandbox/store/schema.h"

namespace bvconn::sandbox {
namespace {

/// A folder of its own that goes with the test.
class StoreFile : public ::testing::Test {
 protected:
  StoreFile()
      : folder_(std::filesystem::temp_directory_path() /
                ("bvsandbox-store-" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directory(folder_);
  }
  ~StoreFile() override { std::filesystem::remove_all(folder_); }

  std::string file() const { return (folder_ / "store.db").string(); }

 private:
  std::filesystem::path folder_;
};

/// Everything of the seeded invoices that depends on the dice.
std::string invoices_text(Store& store) {
  std::string text;
  for (int number = 1001; number <= 1040; ++number) {
    const auto invoice = store.invoice("INV-" + std::to_string(number));
    if (!invoice) continue;
    text.append(invoice->invoice_number).append(invoice->invoice_date).append(invoice->status);
    text.append(invoice->customer.name).append(std::to_string(invoice->tax_cents));
    for (const InvoiceLine& line : invoice->lines) {
      text.append(line.catalog_number).append(std::to_string(line.quantity));
      text.append(std::to_string(line.unit_price_cents));
    }
  }
  return text;
}

TEST(Store, HoldsFortyInvoicesWithLines) {
  Store store(":memory:", std::nullopt);
  for (int number = 1001; number <= 1040; ++number) {
    const auto invoice = store.invoice("INV-" + std::to_string(number));
    ASSERT_TRUE(invoice) << number;
    EXPECT_GE(invoice->lines.size(), 1U);
    EXPECT_EQ(invoice->lines.front().line_number, 1);
    EXPECT_FALSE(invoice->customer.name.empty());
  }
  EXPECT_FALSE(store.invoice("INV-1000"));
  EXPECT_FALSE(store.invoice("INV-1041"));
  EXPECT_FALSE(store.invoice("' OR 1 = 1 --"));
}

TEST(Store, TheSameSeedMakesTheSameData) {
  Store first(":memory:", 7);
  Store second(":memory:", 7);
  EXPECT_EQ(invoices_text(first), invoices_text(second));
}

TEST(Store, AnotherSeedMakesOtherData) {
  Store first(":memory:", 7);
  Store second(":memory:", 8);
  EXPECT_NE(invoices_text(first), invoices_text(second));
}

TEST(Store, WithoutASeedItIsOne) {
  Store first(":memory:", std::nullopt);
  Store second(":memory:", 1);
  EXPECT_EQ(invoices_text(first), invoices_text(second));
}

SoapNode named(std::string_view root, std::string_view name) {
  const SoapNode tree = SoapNode::make(root);
  tree.Nodes().Create("Name", name);
  return tree;
}

TEST(Store, TheLastTwentyRevisionsOfAQuoteAreKnown) {
  Store store(":memory:", std::nullopt);
  Documents documents = store.documents();
  Document quote;
  quote.gid = "QUO-9";
  for (int i = 1; i <= 22; ++i) {
    documents.keep(kQuoteKind, quote, named("Quote", "turn " + std::to_string(i)));
  }
  const auto revisions = documents.revisions(quote);
  ASSERT_EQ(revisions.size(), 20U);
  EXPECT_EQ(revisions.front().revision, 22);
  EXPECT_EQ(child_text(revisions.front().tree(), "Name"), "turn 22");
  EXPECT_EQ(revisions.back().revision, 3);
  EXPECT_EQ(child_text(revisions.back().tree(), "Name"), "turn 3");
}

TEST(Store, AProjectKeepsNoRevisions) {
  Store store(":memory:", std::nullopt);
  Documents documents = store.documents();
  Document project;
  project.gid = "PRJ-9";
  documents.keep(kProjectKind, project, named("Project", "barn"));
  EXPECT_TRUE(documents.revisions(project).empty());
}

TEST(Store, AnybodyWithNameAndPasswordIsAdmitted) {
  Store store(":memory:", std::nullopt);
  EXPECT_TRUE(store.admits("anna", "secret"));
  EXPECT_FALSE(store.admits("", "secret"));
  EXPECT_FALSE(store.admits("anna", ""));
}

TEST_F(StoreFile, UsersInTheStoreAreTheOnlyOnesAdmitted) {
  Store store(file(), std::nullopt);
  Database database(file());
  database.run("INSERT INTO users VALUES ('anna', 'secret')");
  EXPECT_TRUE(store.admits("anna", "secret"));
  EXPECT_FALSE(store.admits("anna", "Secret"));
  EXPECT_FALSE(store.admits("bert", "secret"));
}

TEST_F(StoreFile, KeepsItsDataWhenItIsOpenedAgain) {
  {
    Store store(file(), 7);
    Database database(file());
    database.run("UPDATE invoices SET status = 'PAID', tax_cents = 4711 WHERE uid = 'INV-1005'");
  }
  Store store(file(), 7);
  const auto invoice = store.invoice("INV-1005");
  ASSERT_TRUE(invoice);
  EXPECT_EQ(invoice->tax_cents, 4711);
}

TEST_F(StoreFile, AnotherSeedIsRefusedForAStoreThatHoldsData) {
  { Store store(file(), 7); }
  EXPECT_THROW(Store(file(), 8), DatabaseError);
  Store store(file(), std::nullopt);
  EXPECT_TRUE(store.invoice("INV-1001"));
}

TEST_F(StoreFile, IsKeptInWalMode) {
  Store store(file(), std::nullopt);
  Database database(file());
  Statement mode(database, "PRAGMA journal_mode");
  ASSERT_TRUE(mode.step());
  EXPECT_EQ(mode.text(0), "wal");
}

TEST_F(StoreFile, ForeignKeysHold) {
  Store store(file(), std::nullopt);
  Database database(file());
  EXPECT_THROW(database.run("UPDATE invoices SET customer_gid = 'CUS-0' WHERE uid = 'INV-1001'"),
               DatabaseError);
}

TEST_F(StoreFile, TablesAreStrict) {
  Store store(file(), std::nullopt);
  Database database(file());
  EXPECT_THROW(database.run("UPDATE invoices SET tax_cents = 'much' WHERE uid = 'INV-1001'"),
               DatabaseError);
}

TEST_F(StoreFile, AFileThatIsNoDatabaseIsRefusedAndLeftAlone) {
  const std::string text = "This is a letter, not a database, and it is long enough to be one.";
  std::ofstream(file()) << text;
  EXPECT_THROW(Store(file(), std::nullopt), DatabaseError);
  std::string content;
  std::getline(std::ifstream(file()), content);
  EXPECT_EQ(content, text);
}

TEST_F(StoreFile, AnotherProgramsDatabaseIsRefusedAndLeftAlone) {
  Database database(file());
  database.run("CREATE TABLE recipes (name TEXT)");
  EXPECT_THROW(Store(file(), std::nullopt), DatabaseError);
  Statement mode(database, "PRAGMA journal_mode");
  ASSERT_TRUE(mode.step());
  EXPECT_EQ(mode.text(0), "delete");
}

TEST_F(StoreFile, TablesOfANewerVersionAreRefusedAndLeftAlone) {
  { Store store(file(), std::nullopt); }
  Database(file()).run("PRAGMA user_version = 99");
  try {
    Store store(file(), std::nullopt);
    FAIL() << "a store of version 99 was opened";
  } catch (const DatabaseError& error) {
    EXPECT_EQ(std::string(error.what()),
              "the database has tables of version 99, which a newer bvsandbox made; this one knows "
              "those up to version " +
                  std::to_string(newest_version()));
  }
  Database database(file());
  Statement version(database, "PRAGMA user_version");
  ASSERT_TRUE(version.step());
  EXPECT_EQ(version.integer(0), 99);
}

TEST(Statement, OfOneTextMayBeInUseTwiceAtOnce) {
  Database database(":memory:");
  database.run("CREATE TABLE numbers (number INTEGER); INSERT INTO numbers VALUES (1), (2)");
  constexpr std::string_view kNumbers = "SELECT number FROM numbers ORDER BY number";
  for (int time = 0; time < 2; ++time) {
    Statement one(database, kNumbers);
    ASSERT_TRUE(one.step());
    Statement other(database, kNumbers);
    ASSERT_TRUE(other.step());
    EXPECT_EQ(other.integer(0), 1);
    ASSERT_TRUE(one.step());
    EXPECT_EQ(one.integer(0), 2);
  }
}

TEST(Statement, KeepsNothingOfItsLastUse) {
  Database database(":memory:");
  database.run("CREATE TABLE numbers (number INTEGER); INSERT INTO numbers VALUES (1), (2)");
  constexpr std::string_view kEqual = "SELECT number FROM numbers WHERE number = ?";
  {
    Statement bound(database, kEqual);
    bound.bind(2);
    ASSERT_TRUE(bound.step());
  }
  EXPECT_FALSE(Statement(database, kEqual).step());
  // A statement that still reads would be in the way of this.
  EXPECT_NO_THROW(database.run("DROP TABLE numbers"));
  EXPECT_THROW(Statement(database, kEqual).step(), DatabaseError);
}

}  // namespace
}  // namespace bvconn::sandbox
