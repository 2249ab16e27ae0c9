#include "client/desktop/pages.h"

#include <glib.h>

#include "client/core/hyper_navigate.h"

namespace vexel::client {

namespace {

constexpr char kBrowser[] = "xdg-open";

// What the question is about; empty for what is no address.
std::string SiteOf(const std::string& url) {
  GUri* parts = g_uri_parse(url.c_str(), G_URI_FLAGS_PARSE_RELAXED, nullptr);
  if (!parts) return {};
  const char* host = g_uri_get_host(parts);
  // One form for a name, whatever letters it is written with.
  char* plain = host && *host ? g_hostname_to_ascii(host) : g_strdup(g_uri_get_scheme(parts));
  const std::string site = plain ? plain : "";
  g_free(plain);
  g_uri_unref(parts);
  return site;
}

}  // namespace

bool Pages::Open(const std::string& url) {
  if (!MayOpen(url)) return false;
  const std::string site = SiteOf(url);
  if (site.empty()) return false;
  if (settings_->Allows(site)) return RunForURL(kBrowser, url);
  messages_->Ask("Open a page of " + site + "?\n" + url, "_Open, and don't ask again",
                 [this, site, url] {
                   settings_->Allow(site);
                   if (!RunForURL(kBrowser, url))
                     messages_->TellProblem("No browser could be started.");
                 });
  return true;
}

}  // namespace vexel::client
