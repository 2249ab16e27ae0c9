#include "client/core/services.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "client/core/stream_source.h"
#include "client/core/values.h"
#include "unit/client/temp_folder.h"

namespace vexel::client {
namespace {

TEST(HyperNavigate, OpensPagesAndMailOnly) {
  for (const char* url : {"http://a/", "HTTPS://a/", "mailto:a@b", "ftp://a/"})
    EXPECT_TRUE(MayOpen(url)) << url;
  for (const char* url : {"", "a.html", "/etc/passwd", "file:///etc/passwd", "javascript:alert(1)",
                          "--help", "httpx://a", "http"})
    EXPECT_FALSE(MayOpen(url)) << url;
}

TEST(HyperNavigate, HandsURLAndTargetToItsOpener) {
  std::string got;
  const auto navigate = Make<HyperNavigate>([&](const std::string& url, const std::string& target) {
    got = url + " " + target;
    return true;
  });
  EXPECT_EQ(navigate->GoToURL("http://a/", "_self"), ZEM_OK);
  EXPECT_EQ(got, "http://a/ _self");
  EXPECT_EQ(navigate->GoToURL("http://a/", nullptr), ZEM_OK);
  EXPECT_EQ(Make<HyperNavigate>("true")->GoToURL("file:///a", nullptr), ZEM_FAILED);
  EXPECT_EQ(navigate->GoToURL(nullptr, nullptr), ZEM_BAD_ARGUMENT);
}

// What the command wrote, once it has.
std::string WrittenBy(const std::string& command, const std::string& url, const std::string& path) {
  EXPECT_TRUE(RunForURL(command, url));
  for (int i = 0; i < 1000 && !std::filesystem::exists(path); i++)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  std::ifstream in(path);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(HyperNavigate, RunsItsCommandWithoutAShell) {
  const TempFolder folder;
  const std::string script =
      folder.Write("open.sh", "#!/bin/sh\nprintf '%s|' \"$@\" > \"$0.out\"\n");
  chmod(script.c_str(), 0700);
  const std::string url = "http://a/?q='$(touch x)'&b=\"; rm y";
  EXPECT_EQ(WrittenBy(script + " --new 'two words'", url, script + ".out"),
            "--new|two words|" + url + "|");
  std::filesystem::remove(script + ".out");
  EXPECT_EQ(WrittenBy(script + " --url=%u --end", url, script + ".out"),
            "--url=" + url + "|--end|");
}

TEST(HyperNavigate, ACommandThatIsNotThereIsAFailure) {
  EXPECT_EQ(Make<HyperNavigate>("/nowhere/browser")->GoToURL("http://a/", ""), ZEM_FAILED);
  EXPECT_EQ(Make<HyperNavigate>("'unfinished")->GoToURL("http://a/", ""), ZEM_FAILED);
}

TEST(ErrorLog, MakesALineOfAReport) {
  std::string line;
  const auto log = Make<ErrorLog>([&](const LogReport& report) { line = ReportLine(report); });
  EXPECT_EQ(log->Report(7, 0, 14, "a\nb", "more"), ZEM_OK);
  EXPECT_EQ(line, "severity 7, code 14: a b (more)");
  log->Report(2, 0x80004005, 15, nullptr, nullptr);
  EXPECT_EQ(line, "severity 2, code 15, 0x80004005: ");
}

class MenuResponse : public Object<IZEMContextMenuResponse> {
 public:
  int chosen = -1, cancelled = 0;
  INT32 OnCommand(UINT16 id) override {
    chosen = id;
    return ZEM_OK;
  }
  INT32 OnCanceled() override {
    cancelled++;
    return ZEM_OK;
  }
};

TEST(ContextMenu, HoldsTitleAndItemsAndTellsTheChoice) {
  const auto menu = Make<ContextMenu>();
  const auto response = Make<MenuResponse>();
  menu->SetTitle("Movie");
  menu->AddItem(3, "Zoom", 0, 0, 0);
  menu->AddSeparator();
  EXPECT_FALSE(menu->Choose(3));
  menu->SetResponse(response.get());
  EXPECT_EQ(menu->title(), "Movie");
  ASSERT_EQ(menu->items().size(), 2u);
  EXPECT_TRUE(menu->items()[1].separator);
  EXPECT_TRUE(menu->Choose(3));
  EXPECT_EQ(response->chosen, 3);
  // A separator is no item, whatever its number.
  EXPECT_FALSE(menu->Choose(0));
  EXPECT_TRUE(menu->Cancel());
  EXPECT_EQ(response->cancelled, 1);
  menu->SetResponse(nullptr);
  EXPECT_FALSE(menu->Cancel());
}

TEST(UpgradeCollection, CollectsNamesThatHaveNoZero) {
  const auto upgrades = Make<UpgradeCollection>();
  const uint8_t name[] = {'a', '/', 'b'};
  EXPECT_EQ(upgrades->Add(0, NewBuffer(name).get(), 0, 0), ZEM_OK);
  EXPECT_EQ(upgrades->Add(0, nullptr, 0, 0), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(upgrades->names(), std::vector<std::string>{"a/b"});
}

TEST(StreamSource, AnswersForABackChannelOnlyIfItCanResend) {
  const auto plain = Make<StreamSource>("http://a/m", nullptr);
  EXPECT_FALSE(Query<IZEMBackChannel>(static_cast<IZEMStreamSource*>(plain.get())));
  std::string got;
  const auto source =
      Make<StreamSource>("http://a/m", [&](IZEMBuffer* request) { got = TextOf(request); });
  const auto back = Query<IZEMBackChannel>(static_cast<IZEMStreamSource*>(source.get()));
  ASSERT_TRUE(back);
  EXPECT_EQ(back->Send(NewPacket(NewTextBuffer("ask").get(), 0, 0).get()), ZEM_OK);
  EXPECT_EQ(got, "ask");
  EXPECT_EQ(back->Send(NewLostPacket().get()), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(back->Send(nullptr), ZEM_BAD_ARGUMENT);
}

TEST(StreamSource, HasOneStreamThatKnowsIt) {
  const auto source = Make<StreamSource>("http://a/m", nullptr);
  Ref<IZEMStream> stream;
  EXPECT_EQ(source->GetStream(1, stream.Out()), ZEM_BAD_ARGUMENT);
  ASSERT_EQ(source->GetStream(0, stream.Out()), ZEM_OK);
  EXPECT_EQ(stream->GetStreamNumber(), 0u);
  Ref<IUnknown> back;
  ASSERT_EQ(stream->GetSource(back.Out()), ZEM_OK);
  EXPECT_STREQ(Query<IZEMStreamSource>(back.get())->GetURL(), "http://a/m");
}

TEST(Services, TheContextOffersWhatTheClientHas) {
  EventLoop loop;
  const Services few(&loop, {});
  EXPECT_TRUE(Query<IZEMCommonClassFactory>(few.context()));
  EXPECT_TRUE(Query<IZEMNetworkServices>(few.context()));
  EXPECT_FALSE(Query<IZEMPreferences>(few.context()));
  EXPECT_FALSE(Query<IZEMHyperNavigate>(few.context()));
  EXPECT_FALSE(Query<IZEMErrorMessages>(few.context()));
  const Services all(&loop, {.navigate = Make<HyperNavigate>(),
                             .preferences = Make<Preferences>(""),
                             .report = [](const LogReport&) {}});
  EXPECT_TRUE(Query<IZEMPreferences>(all.context()));
  EXPECT_TRUE(Query<IZEMHyperNavigate>(all.context()));
  EXPECT_TRUE(Query<IZEMErrorMessages>(all.context()));
}

TEST(Services, TheFactoryMakesAllThatAPluginAsksFor) {
  EventLoop loop;
  const Services services(&loop, {});
  const auto factory = Query<IZEMCommonClassFactory>(services.context());
  for (const ZEMID& id :
       {IID_IZEMBuffer, IID_IZEMPacket, IID_IZEMValues, IID_IZEMMultiInstanceSiteUserSupplier,
        IID_IZEMFileSystemManager, IID_IZEMRequest}) {
    void* out = nullptr;
    ASSERT_EQ(factory->CreateInstance(id, &out), ZEM_OK);
    // All interfaces begin with the same operations.
    EXPECT_EQ(static_cast<IUnknown*>(out)->Release(), 0u);
  }
}

}  // namespace
}  // namespace vexel::client
