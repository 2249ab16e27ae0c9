// What the engine is told at the start: the client's services, the user's
// quality; and the menu over the site.
#include "base/ref.h"
#include "host/held.h"
#include "host/performance.h"
#include "host/vexel_engine.h"

namespace vexel {

namespace {

constexpr UINT16 kHighQuality = 20028;
constexpr UINT16 kZoomOut = 20030;
constexpr UINT16 kShowAll = 20034;
constexpr UINT16 kZoomIn = 20042;
constexpr UINT16 kAbout = 20044;
constexpr UINT16 kFullSize = 20046;

constexpr char kMenuTitle[] = "Vexel Commands";
constexpr char kAboutPage[] = "http://vexel.example/about.html";

// In the order of the menu; a null text is a separator.
constexpr struct {
  UINT16 id;
  const char* text;
} kMenu[] = {
    {kZoomIn, "Zoom In"}, {kZoomOut, "Zoom Out"},
    {kFullSize, "100%"},  {kShowAll, "Show All"},
    {0, nullptr},         {kHighQuality, "High Quality"},
    {0, nullptr},         {kAbout, "About Tanderon Vexel..."},
};

// The width and height of what is shown, times 65536.
constexpr SFIXED kHalf = 0x8000;
constexpr SFIXED kTwice = 0x20000;

// From 0 to 4; below kLeastForSmooth there is no anti-aliasing.
constexpr UINT16 kBestQuality = 4;
constexpr UINT16 kLeastForSmooth = 2;

}  // namespace

INT32 CVexelEngine::GetPluginInfo(INT32& loadMultiple, const char*& description,
                                  const char*& copyright, const char*& moreInfo, UINT32& version) {
  loadMultiple = 1;
  description = "Plays Vexel vector movies";
  copyright = "(c) the Vexel authors";
  moreInfo = kAboutPage;
  version = 0x6000747E;
  return ZEM_OK;
}

INT32 CVexelEngine::InitPlugin(IUnknown* context) {
  if (!context) return ZEM_BAD_ARGUMENT;
  ReplaceRef(m_pContext, context);
  if (QueryAndReplace(context, IID_IZEMContextMenu, m_pContextMenu) >= 0) {
    m_pContextMenu->SetTitle(kMenuTitle);
    for (const auto& item : kMenu) {
      if (item.text) {
        m_pContextMenu->AddItem(item.id, item.text, 0, 0, 0);
      } else {
        m_pContextMenu->AddSeparator();
      }
    }
    m_pContextMenu->SetResponse(this);
  }
  UINT16 quality = kBestQuality;
  GetQualityPreference(quality);
  if (quality < kLeastForSmooth) {
    m_bHighQualityAllowed = false;
    highQuality = false;
  }
  // Both are optional.
  static_cast<void>(QueryAndReplace(context, IID_IZEMHyperNavigate, m_pHyperNavigate));
  static_cast<void>(QueryAndReplace(context, IID_IZEMErrorMessages, m_pErrorMessages));
  return QueryAndReplace(context, IID_IZEMCommonClassFactory, m_pClassFactory);
}

INT32 CVexelEngine::GetQualityPreference(UINT16& quality) {
  if (!m_pContext) return ZEM_UNEXPECTED;
  Held<IZEMPreferences> preferences;
  if (QueryAndReplace(m_pContext, IID_IZEMPreferences, preferences.Out()) < 0) return ZEM_OK;
  quality = static_cast<UINT16>(ReadNumber(preferences.Get(), "Quality", quality));
  return ZEM_OK;
}

INT32 CVexelEngine::OnCommand(UINT16 id) {
  const ScopedRef<IZEMRenderer> self(this);
  switch (id) {
    case kHighQuality:
      highQuality = m_bHighQualityAllowed && !highQuality;
      // What was chosen by hand stays.
      autoQuality = false;
      SetCamera(kCameraShowSoon);
      break;
    case kZoomIn:
      ZoomF(kHalf, &m_ZoomPoint);
      break;
    case kZoomOut:
      ZoomF(kTwice, nullptr);
      break;
    case kFullSize:
      Zoom100();
      break;
    case kShowAll:
      Home();
      break;
    case kAbout:
      GetURL(kAboutPage, "_top", nullptr, 0);
      return ZEM_OK;
    default:
      return ZEM_OK;
  }
  Update(3);
  return ZEM_OK;
}

}  // namespace vexel
