// The server's protocol pieces apart from connections: users and their
// credentials, the texts of responses, listening addresses.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "Responses.h"
#include "Programs.h"
#include "Server.h"
#include "Users.h"

namespace {

// A users file StorePassword makes, in a directory of its own.
class TTemporaryFile {
public:
    const std::string& Path() const { return fPath; }

private:
    TScratchDirectory fDirectory;
    std::string fPath = fDirectory.Path() + "/users";
};

std::string Basic(const std::string& credentials) {
    static const char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t i = 0; i < credentials.size(); i += 3) {
        unsigned bits = static_cast<unsigned char>(credentials[i]) << 16;
        if (i + 1 < credentials.size()) bits |= static_cast<unsigned char>(credentials[i + 1]) << 8;
        if (i + 2 < credentials.size()) bits |= static_cast<unsigned char>(credentials[i + 2]);
        out += kDigits[(bits >> 18) & 63];
        out += kDigits[(bits >> 12) & 63];
        out += i + 1 < credentials.size() ? kDigits[(bits >> 6) & 63] : '=';
        out += i + 2 < credentials.size() ? kDigits[bits & 63] : '=';
    }
    return "Basic " + out;
}

TEST(Users, StoresSaltedHashesAndChecksCredentialsAgainstThem) {
    TTemporaryFile file;
    StorePassword(file.Path(), "alice", "correct horse");
    StorePassword(file.Path(), "bob", "pa:ss");
    struct stat status;
    ASSERT_EQ(stat(file.Path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    const std::string content = ReadFile(file.Path());
    EXPECT_EQ(content.find("correct horse"), std::string::npos);

    const TUsers users = TUsers::Load(file.Path());
    std::string user;
    EXPECT_TRUE(users.CheckAuthorization(Basic("alice:correct horse"), user));
    EXPECT_EQ(user, "alice");
    EXPECT_TRUE(users.CheckAuthorization(Basic("bob:pa:ss"), user));  // a password may hold colons
    EXPECT_FALSE(users.CheckAuthorization(Basic("alice:correct horsE"), user));
    EXPECT_FALSE(users.CheckAuthorization(Basic("carol:correct horse"), user));
    EXPECT_FALSE(users.CheckAuthorization(Basic("alice"), user));
    EXPECT_FALSE(users.CheckAuthorization("Basic !!!!", user));
    EXPECT_FALSE(users.CheckAuthorization("Digest " + Basic("alice:correct horse").substr(6), user));
    EXPECT_FALSE(users.CheckAuthorization("", user));
}

TEST(Users, RemembersOnlyTheExactHeadersThatPassed) {
    TTemporaryFile file;
    StorePassword(file.Path(), "alice", "secret");
    const TUsers users = TUsers::Load(file.Path());
    TAuthenticator authenticator(users, 300, 2);
    std::string user;
    EXPECT_FALSE(authenticator.Check(Basic("alice:wrong"), user));
    EXPECT_FALSE(authenticator.Check(Basic("alice:wrong"), user));  // a failure is not remembered as a pass
    EXPECT_TRUE(authenticator.Check(Basic("alice:secret"), user));
    EXPECT_TRUE(authenticator.Check(Basic("alice:secret"), user));
    EXPECT_EQ(user, "alice");
    EXPECT_FALSE(authenticator.Check(Basic("alice:secreT"), user));
    TAuthenticator forgetful(users, 0, 2);
    EXPECT_TRUE(forgetful.Check(Basic("alice:secret"), user));
    EXPECT_TRUE(forgetful.Check(Basic("alice:secret"), user));  // checked again, still right
}

TEST(Users, ReplacesAUsersPasswordAndKeepsTheOthers) {
    TTemporaryFile file;
    StorePassword(file.Path(), "alice", "old");
    StorePassword(file.Path(), "bob", "bobs");
    StorePassword(file.Path(), "alice", "new");
    const TUsers users = TUsers::Load(file.Path());
    EXPECT_FALSE(users.Check("alice", "old"));
    EXPECT_TRUE(users.Check("alice", "new"));
    EXPECT_TRUE(users.Check("bob", "bobs"));
    EXPECT_THROW(StorePassword(file.Path(), "eve:root", "x"), std::runtime_error);
    EXPECT_THROW(StorePassword(file.Path(), "eve", ""), std::runtime_error);
}

TEST(Users, NamesTheFileAndLineOfABadEntry) {
    TTemporaryFile file;
    std::ofstream(file.Path()) << "# users\nalice:$y$j9T$abc$def\nbob has no hash\n";
    try {
        TUsers::Load(file.Path());
        FAIL() << "a bad line was accepted";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find(file.Path() + ":3:"), std::string::npos) << error.what();
    }
    std::ofstream(file.Path()) << "alice:plaintext\n";
    EXPECT_THROW(TUsers::Load(file.Path()), std::runtime_error);
    EXPECT_THROW(TUsers::Load(file.Path() + ".missing"), std::runtime_error);
}

TEST(Base64, DecodesPaddingAndRefusesWhatIsNotBase64) {
    std::string decoded;
    EXPECT_TRUE(DecodeBase64("YQ==", decoded));
    EXPECT_EQ(decoded, "a");
    EXPECT_TRUE(DecodeBase64("YWI=", decoded));
    EXPECT_EQ(decoded, "ab");
    EXPECT_TRUE(DecodeBase64("", decoded));
    EXPECT_EQ(decoded, "");
    for (const char* bad : {"YQ=", "Y===", "YQ==YQ==", "Y*Q=", "=YQ="}) EXPECT_FALSE(DecodeBase64(bad, decoded)) << bad;
}

TEST(Responses, ErrorDocumentsAreWellFormedAndCarryTheDescription) {
    TCimCall call;
    call.messageId = "7\"";
    call.methodName = "GetInstance";
    const std::string text = ErrorDocument(call, ECimStatus::kNotFound, "no instance <ZENTA_Cat.Name=\"x\">");
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(text.c_str()));
    const pugi::xml_node message = document.child("CIM").child("MESSAGE");
    EXPECT_STREQ(message.attribute("ID").value(), "7\"");
    const pugi::xml_node error = message.child("SIMPLERSP").child("IMETHODRESPONSE").child("ERROR");
    EXPECT_STREQ(error.attribute("CODE").value(), "6");
    EXPECT_STREQ(error.attribute("DESCRIPTION").value(), "no instance <ZENTA_Cat.Name=\"x\">");

    call.intrinsic = false;
    call.methodName = "Count";
    pugi::xml_document method;
    ASSERT_TRUE(method.load_string((EnvelopeStart(call) + "<RETURNVALUE/>" + EnvelopeEnd(call)).c_str()));
    EXPECT_TRUE(method.child("CIM").child("MESSAGE").child("SIMPLERSP").child("METHODRESPONSE").child("RETURNVALUE"));
}

TEST(Responses, HeaderValuesCannotEndTheHeader) {
    EXPECT_EQ(HeaderValue("plain text: 100"), "plain text: 100");
    EXPECT_EQ(HeaderValue("a\r\nSet-Cookie: x"), "a%0D%0ASet-Cookie: x");
    EXPECT_EQ(HeaderValue("50% \xC3\xA9"), "50%25 %C3%A9");
    EXPECT_EQ(ChunkHead(300), "12c\r\n");
    EXPECT_EQ(LastChunkText({{"CIMStatusCode", "2"}}), "0\r\nCIMStatusCode: 2\r\n\r\n");
    EXPECT_EQ(HeadText(401, {{"WWW-Authenticate", "Basic realm=\"zentad\""}}),
              "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"zentad\"\r\n\r\n");
}

TEST(ListenAddresses, SplitsAddressesAndTellsLoopbackOnesApart) {
    std::string address;
    unsigned short port = 0;
    ASSERT_TRUE(SplitListenAddress("127.0.0.1:5988", address, port));
    EXPECT_EQ(address, "127.0.0.1");
    EXPECT_EQ(port, 5988);
    ASSERT_TRUE(SplitListenAddress("[::1]:0", address, port));
    EXPECT_EQ(address, "::1");
    EXPECT_EQ(port, 0);
    for (const char* bad : {"127.0.0.1", ":5988", "127.0.0.1:", "127.0.0.1:65536", "localhost:5988", "1.2.3.4:x"}) {
        EXPECT_FALSE(SplitListenAddress(bad, address, port)) << bad;
    }
    EXPECT_TRUE(IsLoopbackAddress("127.0.0.1"));
    EXPECT_TRUE(IsLoopbackAddress("127.8.9.10"));
    EXPECT_TRUE(IsLoopbackAddress("::1"));
    EXPECT_FALSE(IsLoopbackAddress("0.0.0.0"));
    EXPECT_FALSE(IsLoopbackAddress("::"));
    EXPECT_FALSE(IsLoopbackAddress("192.168.1.1"));
}

}  // namespace
