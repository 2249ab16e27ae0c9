// Listens to the client's player. Position reports go on driving a movie while no
// time syncs come; all else is only logged.
#pragma once

#include "host/render_thread_manager.h"

namespace vexel {

class CVexelClientAdviseSink : public IZEMClientAdviseSink {
 public:
  // Starts with a count of 0.
  CVexelClientAdviseSink() = default;
  CVexelClientAdviseSink(const CVexelClientAdviseSink&) = delete;
  CVexelClientAdviseSink& operator=(const CVexelClientAdviseSink&) = delete;

  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  UINT32 Release() override;

  INT32 OnPosLength(UINT32 pos, UINT32 len) override;
  INT32 OnPresentationOpened() override;
  INT32 OnPresentationClosed() override;
  INT32 OnStatisticsChanged() override;
  INT32 OnPreSeek(UINT32 oldTime, UINT32 newTime) override;
  INT32 OnPostSeek(UINT32 oldTime, UINT32 newTime) override;
  INT32 OnStop() override;
  INT32 OnPause(UINT32 time) override;
  INT32 OnBegin(UINT32 time) override;
  INT32 OnBuffering(UINT32 reason, UINT16 percent) override;
  INT32 OnContacting(const char* host) override;

  virtual ~CVexelClientAdviseSink();

  // Begins to listen to `player`, which is held with a reference, as is the log
  // of `context`. `manager` is borrowed until Remove. ZEM_BAD_ARGUMENT for null.
  virtual INT32 Add(IUnknown* context, IZEMPlayer* player, CRenderThreadManager* manager);
  // Stops listening and lets go of all; harmless when not listening.
  virtual void Remove();

 private:
  INT32 m_lRefCount = 0;
  IZEMPlayer* m_pPlayer = nullptr;                   // reference held
  IZEMErrorMessages* m_pErrorMessages = nullptr;     // reference held; may be null
  CRenderThreadManager* m_pThreadManager = nullptr;  // not owned
};

}  // namespace vexel
