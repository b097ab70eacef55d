#include "connection_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "automation/tool_process.h"
#include "status.h"

namespace bvconn::tool {
namespace {

using testing::HasSubstr;
using testing::Not;

/// A home of the test's own, and none of the variables set.
class ConnectionOptionsTest : public testing::Test {
 protected:
  ConnectionOptionsTest() {
    for (const ConnectionField& field : kConnectionFields) {
      ::unsetenv(std::string(field.variable).c_str());
    }
    ::unsetenv("BVCONN_PROFILE");
    ::setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
    std::filesystem::create_directory(folder / "bvconn");
  }

  void profiles(const std::string& toml) const { folder.file("bvconn/profiles.toml", toml); }

  std::string usage(const ConnectionOptions& options) const {
    try {
      resolve_connection(options);
    } catch (const UsageError& error) {
      return error.what();
    }
    return "understood";
  }
  std::string unusable(const ConnectionOptions& options) const {
    try {
      resolve_connection(options);
    } catch (const SettingsError& error) {
      return error.what();
    }
    return "usable";
  }

  test::TemporaryFolder folder;
};

TEST_F(ConnectionOptionsTest, NothingIsGivenAtFirst) {
  const Connection connection = resolve_connection({});
  EXPECT_FALSE(connection.server.given());
  EXPECT_EQ(connection.time_limit(), std::nullopt);
  EXPECT_EQ(connection.password(), "");
}

TEST_F(ConnectionOptionsTest, OptionsComeBeforeTheEnvironmentAndThatBeforeTheProfile) {
  profiles("[test]\nserver = 'profile-server'\nsession = 'profile-session'\nuser = 'profile-user'");
  ::setenv("BVCONN_SERVER", "environment-server", 1);
  ::setenv("BVCONN_SESSION", "environment-session", 1);
  const Connection connection =
      resolve_connection({.given = {{"server", "option-server"}}, .profile = "test"});
  EXPECT_EQ(connection.server.text, "option-server");
  EXPECT_EQ(connection.server.origin, "--server");
  EXPECT_EQ(connection.session.text, "environment-session");
  EXPECT_EQ(connection.session.origin, "BVCONN_SESSION");
  EXPECT_EQ(connection.user.text, "profile-user");
  EXPECT_EQ(connection.user.origin, "profile test");
}

TEST_F(ConnectionOptionsTest, EveryFieldHasItsVariableAndItsKey) {
  std::string toml = "[all]\n";
  for (const ConnectionField& field : kConnectionFields) {
    const std::string value = field.name == "timeout" ? "17" : "/v/" + std::string(field.name);
    toml += std::string(field.name) + " = '" + value + "'\n";
  }
  profiles(toml);
  const Connection by_profile = resolve_connection({.given = {}, .profile = "all"});
  for (const ConnectionField& field : kConnectionFields) {
    EXPECT_EQ((by_profile.*field.value).origin, "profile all") << field.name;
    ::setenv(std::string(field.variable).c_str(), "23", 1);
  }
  EXPECT_EQ(by_profile.dal.text, "/v/dal");
  EXPECT_EQ(by_profile.client_key.text, "/v/client-key");
  const Connection by_environment = resolve_connection({});
  for (const ConnectionField& field : kConnectionFields) {
    EXPECT_EQ((by_environment.*field.value).text, "23") << field.name;
  }
}

TEST_F(ConnectionOptionsTest, TheEnvironmentCanNameTheProfile) {
  profiles("[one]\nserver = 'first'\n[two]\nserver = 'second'");
  ::setenv("BVCONN_PROFILE", "one", 1);
  EXPECT_EQ(resolve_connection({}).server.text, "first");
  EXPECT_EQ(resolve_connection({.given = {}, .profile = "two"}).server.text, "second");
  EXPECT_EQ(resolve_connection({.given = {}, .profile = ""}).server.text, "");
}

TEST_F(ConnectionOptionsTest, AnEmptyOptionKeepsTheOthersOut) {
  ::setenv("BVCONN_DAL_URL", "http://dal/", 1);
  EXPECT_TRUE(resolve_connection({.given = {{"dal", ""}}, .profile = {}}).dal.empty());
  EXPECT_EQ(resolve_connection({}).dal.text, "http://dal/");
}

TEST_F(ConnectionOptionsTest, OfTheOptionsAloneNothingElseCounts) {
  profiles("[test]\nserver = 'profile-server'");
  ::setenv("BVCONN_PROFILE", "test", 1);
  ::setenv("BVCONN_SESSION", "environment-session", 1);
  const Connection connection =
      resolve_connection({.given = {{"user", "u"}}, .profile = {}}, ConnectionSources::kOptions);
  EXPECT_EQ(connection.user.text, "u");
  EXPECT_FALSE(connection.server.given());
  EXPECT_FALSE(connection.session.given());
}

TEST_F(ConnectionOptionsTest, AProfilesFilesLieBesideIt) {
  profiles("[test]\npassword-file = 'secret'\nca-file = '/etc/ca.pem'");
  folder.file("bvconn/secret", "p w\r\n");
  const Connection connection = resolve_connection({.given = {}, .profile = "test"});
  EXPECT_EQ(connection.password(), "p w");
  EXPECT_EQ(connection.ca_file.text, "/etc/ca.pem");
}

TEST_F(ConnectionOptionsTest, APasswordFileLosesOneLineEndAlone) {
  const auto password = [&](const std::string& contents) {
    return resolve_connection(
               {.given = {{"password-file", folder.file("p", contents)}}, .profile = {}})
        .password();
  };
  EXPECT_EQ(password("secret\n"), "secret");
  EXPECT_EQ(password("secret"), "secret");
  EXPECT_EQ(password(" secret \n\n"), " secret \n");
}

TEST_F(ConnectionOptionsTest, APasswordFileThatCannotBeReadIsNamed) {
  ::setenv("BVCONN_DAL_PASSWORD_FILE", folder.path().c_str(), 1);
  try {
    resolve_connection({}).password();
    FAIL() << "a folder was read";
  } catch (const UsageError& error) {
    EXPECT_EQ(std::string(error.what()), "BVCONN_DAL_PASSWORD_FILE: cannot read " +
                                             folder.path().string() + ": Is a directory");
  }
}

TEST_F(ConnectionOptionsTest, TimesHaveUnits) {
  const auto limit = [](const std::string& text) {
    return resolve_connection({.given = {{"timeout", text}}, .profile = {}}).time_limit();
  };
  using std::chrono::milliseconds;
  EXPECT_EQ(limit("30"), milliseconds(30000));
  EXPECT_EQ(limit("2.5"), milliseconds(2500));
  EXPECT_EQ(limit("2s"), milliseconds(2000));
  EXPECT_EQ(limit("500ms"), milliseconds(500));
  EXPECT_EQ(limit("2m"), milliseconds(120000));
  for (const std::string text : {"0", "-1", "x", "3h", "1e99", "nan", "2 s", "0.0001"}) {
    EXPECT_EQ(usage({.given = {{"timeout", text}}, .profile = {}}),
              "--timeout: a time is expected, such as 30, 2.5s, 500ms or 2m, not " + text);
  }
}

TEST_F(ConnectionOptionsTest, AProfileThatIsNotThereIsNamedWithItsNearest) {
  EXPECT_THAT(usage({.given = {}, .profile = "test"}), HasSubstr("there is no profile test"));
  profiles("[test]\nserver = 's'");
  EXPECT_THAT(usage({.given = {}, .profile = "tset"}), HasSubstr("; did you mean test?"));
}

TEST_F(ConnectionOptionsTest, AFileThatIsNoProfilesIsUnusable) {
  profiles("[test]\nserver = 's'\nsesion = 't'");
  EXPECT_THAT(unusable({.given = {}, .profile = "test"}),
              HasSubstr("profile test: there is no sesion; did you mean session?"));
  profiles("[test]\nserver = [1]");
  EXPECT_THAT(unusable({.given = {}, .profile = "test"}), HasSubstr("server: a text is expected"));
  profiles("[test\n");
  EXPECT_THAT(unusable({.given = {}, .profile = "test"}), HasSubstr("is not TOML at line 1"));
  profiles("[test]\nserver = 's'\n[?]\n");
  EXPECT_THAT(unusable({.given = {}, .profile = "test"}),
              HasSubstr("is not TOML at line 3, column 2"));
  profiles(std::string(70000, '#'));
  EXPECT_THAT(unusable({.given = {}, .profile = "test"}), HasSubstr("is larger than 65536 bytes"));
}

TEST_F(ConnectionOptionsTest, WithoutAProfileItsFileIsNotRead) {
  profiles("no TOML");
  EXPECT_EQ(usage({}), "understood");
}

}  // namespace
}  // namespace bvconn::tool
