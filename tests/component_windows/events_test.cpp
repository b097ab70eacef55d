#include <gtest/gtest.h>

#include <vector>

#include "component_windows/client.h"

// The event of the heart beat, as the sinks of hosts see it.
namespace bvconn::test {
namespace {

constexpr CLSID kHeartBeats{
    0xEB53E7FF, 0xD252, 0x455E, {0x9A, 0x28, 0x11, 0x2B, 0xD8, 0x61, 0x5E, 0xFF}};
constexpr IID kEvents{0x67B9CEFF, 0x038A, 0x4645, {0xA9, 0x07, 0xC2, 0xC2, 0xCF, 0x3F, 0x93, 0x50}};
// Nobody listens there.
constexpr const wchar_t* kNoServer = L"http://127.0.0.1:9/soap";

// Listens to the event of the heart beat.
class Sink final : public IDispatch {
 public:
  explicit Sink(bool knows_event = true, bool throws = false)
      : knows_event_(knows_event), throws_(throws) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (id != __uuidof(IUnknown) && id != __uuidof(IDispatch) && !(knows_event_ && id == kEvents)) {
      return E_NOINTERFACE;
    }
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    raised.push_back(id);
    if (throws_) throw 1;
    return S_OK;
  }

  ULONG references = 1;
  std::vector<DISPID> raised;

 private:
  const bool knows_event_;
  const bool throws_;
};

class HeartBeatEvent : public testing::Test {
 protected:
  HeartBeatEvent() {
    IConnectionPointContainer* container = nullptr;
    if (heart == nullptr || FAILED(heart->QueryInterface(__uuidof(IConnectionPointContainer),
                                                         reinterpret_cast<void**>(&container)))) {
      return;
    }
    container->FindConnectionPoint(kEvents, &point);
    container->Release();
  }
  ~HeartBeatEvent() override {
    if (point != nullptr) point->Release();
    if (heart != nullptr) heart->Release();
  }

  void beat_fails() {
    Answer beat;
    call(beat, heart, L"sendHeartBeat", {Var(kNoServer), Var(L"ANNA")});
    EXPECT_EQ(beat.result, S_OK);
  }

  const Library library;
  IDispatch* const heart = library.make(kHeartBeats);
  IConnectionPoint* point = nullptr;
};

TEST_F(HeartBeatEvent, ReachesASinkUntilItIsLetGo) {
  ASSERT_NE(point, nullptr);
  Sink sink;
  DWORD cookie = 0;
  ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
  beat_fails();
  EXPECT_EQ(sink.raised, std::vector<DISPID>{1});
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
  EXPECT_EQ(sink.references, 1u);
}

TEST_F(HeartBeatEvent, ReachesASinkThatAnswersForDispatchAlone) {
  ASSERT_NE(point, nullptr);
  Sink sink(false);
  DWORD cookie = 0;
  ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
  beat_fails();
  EXPECT_EQ(sink.raised, std::vector<DISPID>{1});
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(HeartBeatEvent, MayMeetASinkThatThrows) {
  // Where exceptions are told from file to file by a library of the compiler's that both would
  // share, as on 32 bits, nobody here catches another's.
  if (sizeof(void*) == 4) GTEST_SKIP() << "the file of a host and the library share no exceptions";
  ASSERT_NE(point, nullptr);
  Sink throwing(true, true);
  Sink sink;
  DWORD cookies[2] = {};
  ASSERT_EQ(point->Advise(&throwing, &cookies[0]), S_OK);
  ASSERT_EQ(point->Advise(&sink, &cookies[1]), S_OK);
  beat_fails();
  EXPECT_EQ(throwing.raised.size(), 1u);
  EXPECT_EQ(sink.raised.size(), 1u);
  for (const DWORD cookie : cookies) EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

}  // namespace
}  // namespace bvconn::test
