// The operations layer's own parsing: ELF headers of module files, the
// library's failure lines, near names, requests and frames between processes.
#include <sys/socket.h>
#include <unistd.h>

#include <elf.h>

#include <cstring>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Channel.h"
#include "ElfInspector.h"
#include "LogRelay.h"
#include "ModuleSurvey.h"
#include "Operations.h"
#include "Request.h"

namespace {

std::vector<unsigned char> OwnExecutable() {
    std::vector<unsigned char> image;
    FILE* file = std::fopen("/proc/self/exe", "rb");
    int c;
    while (file != nullptr && (c = std::fgetc(file)) != EOF) image.push_back(static_cast<unsigned char>(c));
    if (file != nullptr) std::fclose(file);
    return image;
}

TLogLine Line(int level, const std::string& text) { return TLogLine{level, text}; }

}  // namespace

TEST(ElfInspector, RefusesWhatCannotBeLoadedAndSaysWhy) {
    std::vector<unsigned char> image = OwnExecutable();
    ASSERT_GT(image.size(), 4096u);
    // The test program itself is an executable, not a shared object.
    Elf64_Half type = ET_DYN;
    std::memcpy(&image[offsetof(Elf64_Ehdr, e_type)], &type, sizeof(type));
    EXPECT_TRUE(InspectElfImage(image.data(), image.size()).loadable);
    EXPECT_EQ(InspectElfImage(image.data(), 100).problem.compare(0, 10, "truncated:"), 0);
    EXPECT_EQ(InspectElfImage(image.data(), 4096).problem.compare(0, 10, "truncated:"), 0);

    std::vector<unsigned char> other = image;
    other[EI_CLASS] = sizeof(void*) == 8 ? ELFCLASS32 : ELFCLASS64;
    EXPECT_EQ(InspectElfImage(other.data(), other.size()).problem,
              sizeof(void*) == 8 ? "a 32-bit module; this host runs 64-bit code" : "a 64-bit module; this host runs 32-bit code");
    const unsigned char text[] = "#!/bin/sh\necho not a library\n";
    EXPECT_EQ(InspectElfImage(text, sizeof(text)).problem, "not an ELF file");
    // Section headers pointing past the end are ignored, never read.
    std::vector<unsigned char> wild = image;
    const unsigned long long far = ~0ull >> 4;
    std::memcpy(&wild[sizeof(void*) == 8 ? offsetof(Elf64_Ehdr, e_shoff) : offsetof(Elf32_Ehdr, e_shoff)], &far,
                sizeof(void*) == 8 ? 8 : 4);
    EXPECT_TRUE(InspectElfImage(wild.data(), wild.size()).factories.empty());
}

TEST(ProviderFailure, TheStatusLineAfterTheFailureLineGivesCodeAndMessage) {
    const std::vector<TLogLine> lines = {
        Line(3, "providerDriver::enumInstances failed for Other"),
        Line(4, "providerDriver status 7 from Other: not mine"),
        Line(3, "providerDriver::enumInstances failed for P"),
        Line(4, "providerDriver status 2 from P: cannot open: /etc/x"),
    };
    const TProviderFailure failure = FindProviderFailure(lines, "P", "");
    EXPECT_TRUE(failure.found);
    EXPECT_EQ(failure.status, 2);
    EXPECT_EQ(failure.message, "cannot open: /etc/x");
    // Without its status line a failure is a plain CIM_ERR_FAILED.
    const TProviderFailure bare = FindProviderFailure({Line(3, "providerDriver::invokeMethod Echo")}, "P", "Echo");
    EXPECT_TRUE(bare.found);
    EXPECT_EQ(bare.status, 1);
    EXPECT_FALSE(FindProviderFailure(lines, "Q", "").found);
    EXPECT_FALSE(FindProviderFailure(lines, "P", "Echo").found) << "an enumeration is no method call";
    EXPECT_EQ(FindProviderFailure(lines, "", "").provider, "Other") << "any provider's failure names it";
}

TEST(ProviderFailure, AWalkSkipsFarEndsThatHaveGoneButNotOtherFailures) {
    const std::vector<TLogLine> gone = {
        Line(3, "providerDriver::getInstance failed for P"),
        Line(4, "providerDriver status 6 from P: no such process"),
    };
    EXPECT_TRUE(FindProviderFailure(gone, "", "").found);
    EXPECT_FALSE(FindProviderFailure(gone, "", "", EMissingInstances::kSkipped).found);
    std::vector<TLogLine> thenBroken = gone;
    thenBroken.push_back(Line(3, "providerDriver::getInstance failed for Q"));
    thenBroken.push_back(Line(4, "providerDriver status 1 from Q: disk gone"));
    const TProviderFailure broken = FindProviderFailure(thenBroken, "", "", EMissingInstances::kSkipped);
    EXPECT_TRUE(broken.found);
    EXPECT_EQ(broken.provider, "Q");
    EXPECT_EQ(broken.message, "disk gone");
    // An enumeration that says "not found" is still the association's own failure.
    const std::vector<TLogLine> listing = {
        Line(3, "providerDriver::enumInstances failed for L"),
        Line(4, "providerDriver status 6 from L: no system"),
    };
    EXPECT_TRUE(FindProviderFailure(listing, "", "", EMissingInstances::kSkipped).found);
}

TEST(NearestName, SuggestsOnlyLikelyTypos) {
    const std::vector<std::string> names = {"Probe_Item", "Probe_Broken", "CIM_Process"};
    EXPECT_EQ(NearestName("Probe_Iten", names), "Probe_Item");
    EXPECT_EQ(NearestName("probe_item", names), "") << "the same name in other case is no typo";
    EXPECT_EQ(NearestName("Network", names), "");
    EXPECT_EQ(NearestName("X", {}), "");
}

TEST(Request, SurvivesTheTripToTheWorkerWithEveryField) {
    TRequest request;
    request.verb = EVerb::kAssociators;
    request.format = EFormat::kJson;
    request.nameSpace = "root/cimv2";
    request.path = "A.Id=\"\xff\"";
    request.arguments.push_back(TArgument{"List", "", true, {"a,b", ""}, false});
    request.filter = {"Assoc", "Result", "Role", "ResultRole"};
    request.hasPropertyList = true;
    request.deep = false;
    request.includeClassOrigin = true;
    const TRequest back = TRequest::Deserialize(request.Serialize());
    EXPECT_EQ(back.verb, EVerb::kAssociators);
    EXPECT_EQ(back.arguments.at(0).items, (std::vector<std::string>{"a,b", ""}));
    EXPECT_EQ(back.filter.resultRole, "ResultRole");
    EXPECT_TRUE(back.hasPropertyList && back.propertyList.empty());
    EXPECT_FALSE(back.deep);
    EXPECT_TRUE(back.includeClassOrigin);
    EXPECT_EQ(back.Describe(), "ai A.Id=\"\xEF\xBF\xBD\"") << "bytes that are not UTF-8 are replaced, not lost";
    EXPECT_THROW(TRequest::Deserialize("{\"verb\": \"nope\"}"), std::runtime_error);
}

TEST(Channel, FramesArriveWholeWhateverTheReadsCutAndTimeOutCleanly) {
    int sockets[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, sockets), 0);
    TChannel writer(sockets[0]);
    TChannel reader(sockets[1]);
    const std::string big(300000, 'x');
    std::thread send([&] {
        writer.Send(EFrame::kData, big);
        writer.Send(EFrame::kDone, "");
    });
    EFrame kind;
    std::string payload;
    ASSERT_EQ(reader.Receive(kind, payload), TChannel::kFrame);
    EXPECT_EQ(kind, EFrame::kData);
    EXPECT_EQ(payload, big);
    ASSERT_EQ(reader.Receive(kind, payload), TChannel::kFrame);
    EXPECT_EQ(kind, EFrame::kDone);
    send.join();
    EXPECT_EQ(reader.Receive(kind, payload, std::chrono::steady_clock::now() + std::chrono::milliseconds(20)),
              TChannel::kTimedOut);
    // A length no sender could mean is garbage, not a reason to allocate.
    const unsigned char garbage[] = {0xff, 0xff, 0xff, 0xff, 4};
    ASSERT_EQ(write(sockets[0], garbage, sizeof(garbage)), static_cast<ssize_t>(sizeof(garbage)));
    EXPECT_EQ(reader.Receive(kind, payload), TChannel::kClosed);
}
