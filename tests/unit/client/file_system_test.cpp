#include "client/core/file_system.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "client/core/request.h"
#include "unit/client/responses.h"
#include "unit/client/temp_folder.h"

namespace vexel::client {
namespace {

using Told = std::vector<std::string>;

class Files : public testing::Test {
 protected:
  EventLoop loop;
  HttpService http{&loop};
  std::shared_ptr<FileAccess> access = std::make_shared<FileAccess>();
  Ref<FileSystem> system;
  Ref<ManagerResponse> manager = Make<ManagerResponse>();
  Ref<FileResponse> file = Make<FileResponse>();
  TempFolder folder;

  void SetUp() override {
    access->loop = &loop;
    access->http = &http;
    system = Make<FileSystem>(access);
    system->Init(manager.get());
  }
  void TearDown() override {
    system->Cancel();
    if (manager->file) manager->file->Close();
    Settle();
    manager->file = nullptr;
    EXPECT_EQ(*access->pending, 0);
  }
  void Settle() {
    EXPECT_TRUE(loop.RunUntil([this] { return *access->pending == 0; }, kTestMs));
  }
  bool Find(const std::string& url) {
    const auto request = Make<Request>();
    request->SetURL(url.c_str());
    manager->file = nullptr;
    EXPECT_EQ(system->GetFileObject(request.get(), nullptr), ZEM_OK);
    Settle();
    return bool(manager->file);
  }
  // Finds and opens.
  bool Open(const std::string& url) {
    if (!Find(url)) return false;
    EXPECT_EQ(manager->file->Init(ZEM_FILE_READ | ZEM_FILE_BINARY, file.get()), ZEM_OK);
    EXPECT_TRUE(file->told.empty());
    Settle();
    return file->told == Told{"init"};
  }
};

TEST_F(Files, AreReadInPiecesUpToTheEnd) {
  ASSERT_TRUE(Open(folder.Write("a.txt", std::string(5000, 'a'))));
  for (int i = 0; i < 4; i++) {
    EXPECT_EQ(manager->file->Read(2048), ZEM_OK);
    Settle();
  }
  EXPECT_EQ(file->told, (Told{"init", "read 2048", "read 2048", "read 904", "read 0"}));
  EXPECT_EQ(file->body, std::string(5000, 'a'));
}

TEST_F(Files, AnEndOnAFullPieceIsFollowedByAnEmptyOne) {
  ASSERT_TRUE(Open(folder.Write("a.txt", std::string(4096, 'a'))));
  for (int i = 0; i < 3; i++) manager->file->Read(2048);
  Settle();
  EXPECT_EQ(file->told, (Told{"init", "read 2048", "read 2048", "read 0"}));
}

TEST_F(Files, CallsAreAnsweredInTheirOrder) {
  ASSERT_TRUE(Open(folder.Write("a.txt", "0123456789")));
  manager->file->Seek(8, 0);
  manager->file->Read(100);
  manager->file->Seek(static_cast<UINT32>(-10), 1);
  manager->file->Read(3);
  manager->file->Write(BufferOf("x").get());
  manager->file->Close();
  EXPECT_EQ(file->told.size(), 1u);
  Settle();
  EXPECT_EQ(file->told,
            (Told{"init", "seek", "read 2", "seek", "read 3", "write failed", "close"}));
  EXPECT_EQ(file->body, "89012");
  EXPECT_EQ(manager->file->Read(1), ZEM_UNEXPECTED);
}

TEST_F(Files, AMissingFileFailsToOpen) {
  EXPECT_FALSE(Open(folder / "nowhere.txt"));
  EXPECT_EQ(file->told, (Told{"init failed"}));
}

TEST_F(Files, FoldersAndPipesAreNoFiles) {
  EXPECT_FALSE(Open(folder / ""));
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  file = Make<FileResponse>();
  EXPECT_FALSE(Open(pipe));
}

TEST_F(Files, VariablesBehindAQuestionMarkAreNoPartOfTheName) {
  folder.Write("a.txt", "plain");
  ASSERT_TRUE(Open(folder / "a.txt?x=1&y=2"));
  manager->file->Read(100);
  Settle();
  EXPECT_EQ(file->body, "plain");
}

TEST_F(Files, FileURLsAndJoinedPathsAreUnderstood) {
  folder.Write("a b.txt", "blank");
  std::filesystem::create_directory(folder / "sub");
  ASSERT_TRUE(Open("file://" + folder / "sub/../a%20b.txt"));
  file = Make<FileResponse>();
  ASSERT_TRUE(Open(folder / "sub/../a b.txt"));
}

TEST_F(Files, OtherSchemesAreRefusedButAnswered) {
  EXPECT_FALSE(Find("ftp://127.0.0.1/a"));
  EXPECT_EQ(manager->told, (Told{"init", "file failed"}));
}

TEST_F(Files, LocalFilesCanBeForbidden) {
  access->allowLocal = false;
  EXPECT_FALSE(Find(folder.Write("a.txt", "a")));
}

TEST_F(Files, NothingIsAnsweredAfterCancel) {
  const auto request = Make<Request>();
  request->SetURL("a");
  Settle();
  system->GetFileObject(request.get(), nullptr);
  EXPECT_EQ(*access->pending, 1);
  system->Cancel();
  EXPECT_EQ(*access->pending, 0);
  while (loop.Turn(false)) {
  }
  EXPECT_EQ(manager->told, Told{"init"});
  EXPECT_EQ(system->GetFileObject(request.get(), nullptr), ZEM_UNEXPECTED);
}

TEST_F(Files, AReleasedServiceAnswersNoMore) {
  system = nullptr;
  while (loop.Turn(false)) {
  }
  EXPECT_TRUE(manager->told.empty());
  EXPECT_EQ(manager->AddRef(), 2u);
  manager->Release();
  system = Make<FileSystem>(access);
}

TEST_F(Files, FoldersAreNotListedButAnswered) {
  const auto request = Make<Request>();
  request->SetURL("/");
  EXPECT_EQ(system->GetDirObject(request.get()), ZEM_OK);
  Settle();
  EXPECT_EQ(manager->told, (Told{"init", "folder failed"}));
}

TEST_F(Files, WrongArgumentsAreRefused) {
  EXPECT_EQ(system->Init(nullptr), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(system->GetFileObject(nullptr, nullptr), ZEM_BAD_ARGUMENT);
  ASSERT_TRUE(Find(folder.Write("a.txt", "a")));
  EXPECT_EQ(manager->file->Init(ZEM_FILE_READ, nullptr), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(manager->file->Init(2, file.get()), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(manager->file->Read(1), ZEM_UNEXPECTED);
  EXPECT_EQ(manager->file->Close(), ZEM_UNEXPECTED);
}

}  // namespace
}  // namespace vexel::client
