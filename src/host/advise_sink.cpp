#include "host/advise_sink.h"

#include "base/ref.h"
#include "host/host_log.h"

namespace vexel {
namespace {

// While it is being destroyed, an object counts as held, so that whoever still
// takes and gives back a reference does not destroy it again.
constexpr INT32 kDestroying = 0x40000000;

using ulong = unsigned long;

}  // namespace

CVexelClientAdviseSink::~CVexelClientAdviseSink() {
  m_lRefCount = kDestroying;
  CVexelClientAdviseSink::Remove();
}

INT32 CVexelClientAdviseSink::QueryInterface(const ZEMID& id, void** out) {
  return AnswerQuery<IZEMClientAdviseSink>(this, IID_IZEMClientAdviseSink, id, out);
}

UINT32 CVexelClientAdviseSink::AddRef() {
  return static_cast<UINT32>(++m_lRefCount);
}

UINT32 CVexelClientAdviseSink::Release() {
  if (--m_lRefCount > 0) return static_cast<UINT32>(m_lRefCount);
  delete this;
  return 0;
}

INT32 CVexelClientAdviseSink::Add(IUnknown* context, IZEMPlayer* player,
                                  CRenderThreadManager* manager) {
  if (!context || !player || !manager) return ZEM_BAD_ARGUMENT;
  const ScopedRef<IZEMClientAdviseSink> self(this);
  ReplaceRef(m_pPlayer, player);
  m_pThreadManager = manager;
  // The log is optional.
  static_cast<void>(QueryAndReplace(context, IID_IZEMErrorMessages, m_pErrorMessages));
  // The client may have had us removed from inside.
  return m_pPlayer == player ? player->AddAdviseSink(this) : ZEM_UNEXPECTED;
}

void CVexelClientAdviseSink::Remove() {
  m_pThreadManager = nullptr;
  if (IZEMPlayer* player = m_pPlayer) {
    m_pPlayer = nullptr;
    player->RemoveAdviseSink(this);
    player->Release();
  }
  ReleaseAndClear(m_pErrorMessages);
}

INT32 CVexelClientAdviseSink::OnPosLength(UINT32 pos, UINT32 len) {
  ScopedRef<IZEMClientAdviseSink> self(this);
  LogReport(m_pErrorMessages, kLogState, "CAS:OnPosLength(%lu,%lu)", ulong{pos}, ulong{len});
  return m_pThreadManager ? m_pThreadManager->OnPosLength(pos, len) : ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnPresentationOpened() {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnPresentationOpened()");
  return ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnPresentationClosed() {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnPresentationClosed()");
  return ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnStatisticsChanged() {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnStatisticsChanged()");
  return ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnPreSeek(UINT32 oldTime, UINT32 newTime) {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnPreSeek(%lu,%lu)", ulong{oldTime}, ulong{newTime});
  return ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnPostSeek(UINT32 oldTime, UINT32 newTime) {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnPostSeek(%lu,%lu)", ulong{oldTime}, ulong{newTime});
  return ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnStop() {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnStop()");
  return ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnPause(UINT32 time) {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnPause(%lu)", ulong{time});
  return ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnBegin(UINT32 time) {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnBegin(%lu)", ulong{time});
  return ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnBuffering(UINT32 reason, UINT16 percent) {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnBuffering(%lu,%u)", ulong{reason},
            unsigned{percent});
  return ZEM_OK;
}

INT32 CVexelClientAdviseSink::OnContacting(const char* host) {
  LogReport(m_pErrorMessages, kLogState, "CAS:OnContacting(%s)", host ? host : "");
  return ZEM_OK;
}

}  // namespace vexel
