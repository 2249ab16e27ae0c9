// The interface between a streaming media client and its renderer plug-ins.
//
// A client loads the plug-in's library, calls ZEMCreateInstance, and from then
// on both sides talk through interfaces: objects with a table of operations, in
// the order of their declaration behind QueryInterface, AddRef and Release.
// Neither exceptions nor run-time type information cross the border, nothing is
// inherited virtually, and everything happens on the client's one thread.
//
// Usable from C++11 on.
#pragma once

#include "zem_files.h"
#include "zem_ids.h"
#include "zem_network.h"
#include "zem_player.h"
#include "zem_plugin.h"
#include "zem_services.h"
#include "zem_site.h"
#include "zem_stream.h"
#include "zem_types.h"
#include "zem_unknown.h"
#include "zem_values.h"
