/* table_client LIBRARY: a client in C, which knows no header of ours. It builds
 * its objects' tables by hand, calls the plug-in by numbers of slots, plays a
 * small movie, and compares the order of all calls and the picture. So it holds
 * the plug-in to the binary interface itself: which slot is which, how arguments
 * travel, sizes and offsets of structures, and the values of identifiers.
 *
 * Slots count from 1, behind QueryInterface, AddRef and Release. */
#include <dlfcn.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#define OK 0
#define NO_INTERFACE ((int32_t)0x80004002)
#define UNEXPECTED ((int32_t)0x80040009)

typedef struct {
  uint32_t a;
  uint16_t b, c;
  uint8_t d[8];
} Id;
typedef struct {
  int32_t left, top, right, bottom;
} Rect;
typedef struct {
  int32_t width, height;
} Size;
typedef struct {
  uint32_t event;
  void *window, *param1, *param2;
  uint32_t result;
  int32_t handled;
} Event;
typedef struct {
  uint32_t headerSize;
  int32_t width, height;
  uint16_t planes, bitsPerPixel;
  uint32_t zero[6];
  uint8_t pad[12];
} BitmapInfo;

_Static_assert(sizeof(Id) == 16 && sizeof(Event) == 40 && sizeof(BitmapInfo) == 52, "sizes");
_Static_assert(offsetof(Event, param1) == 16 && offsetof(Event, handled) == 36, "offsets");

/* Interfaces of the client, and of the plug-in as it is asked for them. */
enum {
  UNKNOWN,
  PLUGIN,
  RENDERER,
  SITE_USER,
  USER_SUPPLIER,
  MULTI_SUPPLIER,
  FACTORY,
  ERRORS,
  PREFERENCES,
  BACK_CHANNEL,
  MENU,
  MENU_RESPONSE,
  NAVIGATE,
  SCHEDULER,
  VALUES,
  BUFFER,
  PACKET,
  FILES,
  FILE_OBJECT,
  REQUEST,
  KINDS
};
static const Id ids[KINDS] = {
    {0xF238B7B9, 0xA07C, 0x4613, {0xA4, 0x01, 0xD4, 0xA3, 0x53, 0xE9, 0x4C, 0x75}},
    {0x3229516B, 0x02F7, 0x42BA, {0xB4, 0xA8, 0xD3, 0x9F, 0x8A, 0x2D, 0x28, 0x7B}},
    {0x26F9B5F8, 0x7D61, 0x4944, {0x9A, 0xA2, 0xE2, 0x8C, 0xCC, 0x5F, 0xD7, 0x2E}},
    {0xFED10652, 0x89A4, 0x42F3, {0xBA, 0x6F, 0x14, 0x43, 0xAF, 0x7E, 0x21, 0xA2}},
    {0xBF73EB2E, 0x0E0D, 0x4129, {0xAE, 0x18, 0xAC, 0xDC, 0xDC, 0x9D, 0x12, 0x9C}},
    {0x6804ABF2, 0x507A, 0x48BC, {0x99, 0x3E, 0xFC, 0xA0, 0xFA, 0x4A, 0x79, 0xD6}},
    {0x82A4BBEB, 0xAEB6, 0x41C2, {0xB4, 0x13, 0x25, 0x19, 0xCE, 0x1C, 0x8B, 0x38}},
    {0x8F3077EB, 0xF56B, 0x49F5, {0xB0, 0xF2, 0xB1, 0xA3, 0x5C, 0x0F, 0xB0, 0xB1}},
    {0xC9D87D15, 0x58BB, 0x45EB, {0xB0, 0x46, 0x89, 0xFD, 0x10, 0x2D, 0xC9, 0x2A}},
    {0x788D695A, 0xD5A2, 0x4702, {0xA0, 0x4C, 0xA6, 0xD4, 0x3D, 0x11, 0x10, 0xB8}},
    {0x7E18AC73, 0x3D98, 0x40AD, {0xBD, 0xBB, 0x75, 0x86, 0x1A, 0x47, 0x00, 0x74}},
    {0xD5F354BA, 0x82C1, 0x4A24, {0xB6, 0xD5, 0xA3, 0x4F, 0xD6, 0x47, 0x15, 0x59}},
    {0xC6DECBFC, 0xE65C, 0x417B, {0xAE, 0x00, 0xE9, 0xB6, 0x59, 0x03, 0xEE, 0xA9}},
    {0xB379C913, 0x2191, 0x466E, {0x82, 0xD9, 0xE5, 0x7F, 0xE7, 0x29, 0xDA, 0xD6}},
    {0x9778A6D2, 0x503F, 0x45F4, {0x95, 0xB3, 0xA3, 0xA3, 0x94, 0x7C, 0x58, 0xA0}},
    {0x041C3FC4, 0xA645, 0x4E41, {0xB4, 0xD5, 0x3B, 0xFC, 0x33, 0x6C, 0xF0, 0x8E}},
    {0x5753AE64, 0x0E60, 0x41EC, {0x88, 0x2D, 0xC4, 0x3A, 0xDC, 0x0A, 0xFE, 0xF1}},
    {0x50FBB095, 0xA313, 0x45B9, {0xA4, 0x02, 0xAA, 0x31, 0x6D, 0x7A, 0xF0, 0x3A}},
    {0xAAEA2453, 0x0985, 0x49F2, {0xA0, 0xA0, 0x76, 0xE2, 0x23, 0x89, 0xD9, 0x9C}},
    {0xE5BD5C8F, 0xB7FD, 0x4F4B, {0x89, 0x71, 0x60, 0x25, 0x2E, 0x57, 0x87, 0x24}},
};

/* --- What happened, one line a call --- */

static char trace[65536];
static int failures;

#define TRACE(...) snprintf(trace + strlen(trace), sizeof trace - strlen(trace), __VA_ARGS__)

static void Expect(int true_, const char* what) {
  if (true_) return;
  ++failures;
  fprintf(stderr, "table_client: %s\n", what);
}

/* --- Objects --- */

typedef void (*Slot)(void);
enum { MAX_SLOTS = 14 };

typedef struct Object {
  const Slot* table;
  const char* name;
  int kind, refs;
  uint8_t* bytes; /* of a buffer */
  uint32_t size;
  struct Object* buffer; /* of a packet, and of the header: its file head */
  uint32_t time;
  void* held; /* the object of the plug-in's that it was given */
} Object;

static int alive; /* buffers, packets and the like that were made */
static Object context, factory, errors, preferences, menu, navigate, scheduler, player, stream,
    source, backChannel, site, surface, supplier, files, request, file;

static Slot* SlotsOf(void* object) {
  return *(Slot**)object;
}
/* Calls slot `n` of an object, which returns an int32_t, with itself and what
 * follows. Arguments are whole ints, pointers, or structures by value. */
#define CALL(n, object, ...) (((int32_t(*)())SlotsOf(object)[2 + (n)])(object, __VA_ARGS__))
#define CALL0(n, object) (((int32_t(*)(void*))SlotsOf(object)[2 + (n)])(object))

static void* Query(void* object, int kind) {
  void* out = NULL;
  ((int32_t(*)(void*, const Id*, void**))SlotsOf(object)[0])(object, &ids[kind], &out);
  return out;
}
static uint32_t AddRef(void* object) {
  return ((uint32_t(*)(void*))SlotsOf(object)[1])(object);
}
static uint32_t Release(void* object) {
  return ((uint32_t(*)(void*))SlotsOf(object)[2])(object);
}
static void Keep(Object* self, void* object) {
  self->held = object;
  AddRef(object);
}
static void LetGo(Object* self) {
  void* held = self->held;
  self->held = NULL;
  if (held) Release(held);
}

static int32_t MyQuery(Object* self, const Id* id, void** out) {
  static Object* const services[] = {&factory, &errors, &preferences, &menu, &navigate, &scheduler};
  *out = NULL;
  if (memcmp(id, &ids[self->kind], sizeof *id) == 0 || memcmp(id, &ids[UNKNOWN], sizeof *id) == 0) {
    *out = self;
  }
  for (size_t i = 0; self == &context && i < sizeof services / sizeof *services; ++i) {
    if (memcmp(id, &ids[services[i]->kind], sizeof *id) == 0) *out = services[i];
  }
  if (self == &source && memcmp(id, &ids[BACK_CHANNEL], sizeof *id) == 0) *out = &backChannel;
  if (!*out) return NO_INTERFACE;
  AddRef(*out);
  return OK;
}
static uint32_t MyAddRef(Object* self) {
  return (uint32_t)++self->refs;
}
static uint32_t MyRelease(Object* self) {
  const uint32_t left = (uint32_t)--self->refs;
  if (left == 0 && (self->kind == BUFFER || self->kind == PACKET)) {
    if (self->buffer) Release(self->buffer);
    free(self->bytes);
    free(self);
    --alive;
  }
  return left;
}

/* A slot that nobody is to call. */
static int32_t Nobody(Object* self) {
  TRACE("%s: a slot that is not for the plug-in\n", self->name);
  return UNEXPECTED;
}

#define BASE (Slot) MyQuery, (Slot)MyAddRef, (Slot)MyRelease
#define NO (Slot) Nobody

/* --- Values --- */

static int32_t BufferGet(Object* self, uint8_t** data, uint32_t* size) {
  *data = self->bytes;
  *size = self->size;
  return OK;
}
static int32_t BufferSetSize(Object* self, uint32_t size) {
  self->bytes = realloc(self->bytes, size + 1);
  self->size = size;
  return OK;
}
static int32_t BufferSet(Object* self, const uint8_t* data, uint32_t size) {
  BufferSetSize(self, size);
  memcpy(self->bytes, data, size);
  return OK;
}
static uint32_t BufferGetSize(Object* self) {
  return self->size;
}
static uint8_t* BufferBytes(Object* self) {
  return self->bytes;
}
static const Slot bufferSlots[] = {BASE,
                                   (Slot)BufferGet,
                                   (Slot)BufferSet,
                                   (Slot)BufferSetSize,
                                   (Slot)BufferGetSize,
                                   (Slot)BufferBytes};

static Object* PacketBuffer(Object* self) {
  if (self->buffer) AddRef(self->buffer);
  return self->buffer;
}
static uint32_t PacketTime(Object* self) {
  return self->time;
}
static int32_t PacketIsLost(Object* self) {
  return !self->buffer;
}
static int32_t PacketSet(Object* self, Object* buffer, uint32_t time, uint16_t number,
                         uint8_t flags, uint16_t rule) {
  self->buffer = buffer;
  AddRef(buffer);
  self->time = time;
  if (flags) TRACE("request: time %u stream %u flags %u rule %u\n", time, number, flags, rule);
  return OK;
}
static const Slot packetSlots[] = {BASE,
                                   NO,
                                   (Slot)PacketBuffer,
                                   (Slot)PacketTime,
                                   NO,
                                   NO,
                                   NO,
                                   (Slot)PacketIsLost,
                                   NO,
                                   (Slot)PacketSet,
                                   NO,
                                   NO,
                                   NO};

static Object* Make(int kind) {
  Object* object = calloc(1, sizeof *object);
  object->table = kind == BUFFER ? bufferSlots : packetSlots;
  object->kind = kind;
  object->refs = 1;
  ++alive;
  return object;
}
static Object* MakeBuffer(const uint8_t* bytes, uint32_t size) {
  Object* buffer = Make(BUFFER);
  BufferSet(buffer, bytes, size);
  return buffer;
}

/* The header. */
static int32_t GetNumber(Object* self, const char* key, uint32_t* value) {
  (void)self;
  TRACE("header %s\n", key);
  if (strcmp(key, "Duration") == 0) {
    *value = 1000;
  } else if (strcmp(key, "RendererFlags") == 0 || strcmp(key, "NumPackets") == 0) {
    *value = 1;
  } else {
    return UNEXPECTED;
  }
  return OK;
}
static int32_t GetBuffer(Object* self, const char* key, Object** value) {
  TRACE("header %s\n", key);
  *value = self->buffer;
  AddRef(self->buffer);
  return OK;
}
static const Slot valuesSlots[] = {
    BASE, NO, (Slot)GetNumber, NO, NO, NO, (Slot)GetBuffer, NO, NO, NO, NO, NO, NO};

/* --- Services --- */

static int32_t CreateInstance(Object* self, const Id* id, void** out) {
  (void)self;
  Object* const known[] = {&supplier, &files, &request};
  *out = NULL;
  for (int kind = BUFFER; kind <= PACKET; ++kind) {
    if (memcmp(id, &ids[kind], sizeof *id) == 0) *out = Make(kind);
  }
  for (size_t i = 0; i < 3; ++i) {
    if (memcmp(id, &ids[known[i]->kind], sizeof *id) != 0) continue;
    TRACE("factory makes %s\n", known[i]->name);
    *out = known[i];
    AddRef(known[i]);
  }
  return *out ? OK : NO_INTERFACE;
}
static const Slot factorySlots[] = {BASE, (Slot)CreateInstance};

static int32_t Report(Object* self, uint8_t severity, uint32_t result, uint32_t code,
                      const char* text, const char* more) {
  (void)self;
  Expect(severity == 7 && result == 0 && (code == 14 || code == 15) && text && !more, "a report");
  return OK;
}
static const Slot errorsSlots[] = {BASE, (Slot)Report};

static int32_t ReadPref(Object* self, const char* key, Object** value) {
  (void)self;
  TRACE("preference %s\n", key);
  *value = strcmp(key, "Quality") == 0 ? MakeBuffer((const uint8_t*)"4", 2) : NULL;
  return OK;
}
static const Slot preferencesSlots[] = {BASE, (Slot)ReadPref, NO};

static int32_t SetTitle(Object* self, const char* title) {
  (void)self;
  TRACE("menu %s\n", title);
  return OK;
}
static int32_t AddItem(Object* self, uint16_t id, const char* text, uint32_t a, uint32_t b,
                       uint32_t c) {
  (void)self;
  TRACE("menu %u %s %u%u%u\n", id, text, a, b, c);
  return OK;
}
static int32_t AddSeparator(Object* self) {
  (void)self;
  TRACE("menu -\n");
  return OK;
}
static int32_t SetResponse(Object* self, void* response) {
  TRACE("menu response %s\n", response ? "set" : "cleared");
  self->held = response;
  return OK;
}
static const Slot menuSlots[] = {BASE, (Slot)SetTitle, (Slot)AddItem, (Slot)AddSeparator,
                                 (Slot)SetResponse};

static int32_t GoToURL(Object* self, const char* url, const char* target) {
  (void)self;
  TRACE("navigate %s %s\n", strstr(url, "about") ? "about" : url, target);
  return OK;
}
static const Slot navigateSlots[] = {BASE, (Slot)GoToURL};

static void* ScheduleRelative(Object* self, void* callback, uint32_t ms) {
  TRACE("schedule %u\n", ms);
  Keep(self, callback);
  return self;
}
static int32_t GetTime(Object* self, uint32_t now[2]) {
  (void)self;
  now[0] = 7;
  now[1] = 500000;
  return OK;
}
static int32_t RemoveTimer(Object* self, void* handle) {
  TRACE("remove timer\n");
  Expect(handle == self, "the handle comes back");
  LetGo(self);
  return OK;
}
static const Slot schedulerSlots[] = {BASE, (Slot)ScheduleRelative, NO, (Slot)RemoveTimer,
                                      (Slot)GetTime};

static int32_t AddSink(Object* self, void* sink) {
  TRACE("add sink\n");
  Keep(self, sink);
  return OK;
}
static int32_t RemoveSink(Object* self, void* sink) {
  TRACE("remove sink\n");
  Expect(sink == self->held, "the sink that was added");
  LetGo(self);
  return OK;
}
static const Slot playerSlots[] = {
    BASE, NO, NO, NO, NO, NO, NO, NO, NO, NO, (Slot)AddSink, (Slot)RemoveSink};

/* --- The stream --- */

static int32_t GetSource(Object* self, void** out) {
  (void)self;
  TRACE("source\n");
  *out = &source;
  AddRef(&source);
  return OK;
}
static uint32_t GetStreamNumber(Object* self) {
  (void)self;
  return 0x10007;
}
static const Slot streamSlots[] = {BASE, (Slot)GetSource, (Slot)GetStreamNumber};

static const char* GetURL(Object* self) {
  (void)self;
  TRACE("url\n");
  return "http://host/folder/movie.vxf";
}
static const Slot sourceSlots[] = {BASE, NO, NO, (Slot)GetURL};

static int32_t Send(Object* self, Object* packet) {
  (void)self;
  const uint8_t* b = packet->buffer->bytes;
  TRACE("send %u bytes: %u at %u\n", packet->buffer->size,
        (unsigned)(b[4] << 24 | b[5] << 16 | b[6] << 8 | b[7]),
        (unsigned)(b[0] << 24 | b[1] << 16 | b[2] << 8 | b[3]));
  return OK;
}
static const Slot backChannelSlots[] = {BASE, (Slot)Send};

/* --- The site --- */

static Size siteSize;
static int copies;
static uint32_t pixel; /* the last picture's middle */

static int32_t Draw(void) {
  Event event = {0x2001, NULL, &surface, NULL, 9, 9};
  const int32_t result = CALL(3, site.held, &event);
  return result ? -1 : event.handled;
}
static int32_t SetSize(Object* self, Size size) {
  (void)self;
  TRACE("site size %d %d\n", size.width, size.height);
  siteSize = size;
  return OK;
}
static int32_t GetSize(Object* self, Size* size) {
  (void)self;
  *size = siteSize;
  return OK;
}
static int32_t DamageRect(Object* self, Rect rect) {
  (void)self;
  TRACE("damage %d %d %d %d\n", rect.left, rect.top, rect.right, rect.bottom);
  return OK;
}
static int32_t ForceRedraw(Object* self) {
  (void)self;
  TRACE("redraw\n");
  Expect(Draw() == 1, "a drawing event is handled");
  return OK;
}
static const Slot siteSlots[] = {BASE,
                                 NO,
                                 NO,
                                 NO,
                                 NO,
                                 NO,
                                 NO,
                                 NO,
                                 NO,
                                 NO,
                                 (Slot)SetSize,
                                 (Slot)GetSize,
                                 (Slot)DamageRect,
                                 NO,
                                 (Slot)ForceRedraw};

static int32_t CopyBitmap(Object* self, const uint8_t* pixels, const BitmapInfo* info,
                          const Rect* dest, const Rect* from) {
  (void)self;
  TRACE("copy %u: %dx%d %u %u from %d %d %d %d to %d %d %d %d\n", info->headerSize, info->width,
        info->height, info->planes, info->bitsPerPixel, from->left, from->top, from->right,
        from->bottom, dest->left, dest->top, dest->right, dest->bottom);
  memcpy(&pixel, pixels + (size_t)(info->width * (info->height / 2) + info->width / 2) * 4, 4);
  ++copies;
  return OK;
}
static const Slot surfaceSlots[] = {BASE, (Slot)CopyBitmap};

static int32_t SetSingleSiteUser(Object* self, void* user) {
  TRACE("supplier gets its user\n");
  Keep(self, user);
  return OK;
}
static int32_t ReleaseSingleSiteUser(Object* self) {
  TRACE("supplier lets go\n");
  LetGo(self);
  return OK;
}
static const Slot supplierSlots[] = {BASE, (Slot)SetSingleSiteUser, (Slot)ReleaseSingleSiteUser};

/* --- Files --- */

static int32_t FilesInit(Object* self, void* response) {
  TRACE("files start\n");
  Keep(self, response);
  return OK;
}
static int32_t Cancel(Object* self) {
  TRACE("files cancel\n");
  LetGo(self);
  return OK;
}
static int32_t GetFileObject(Object* self, void* asked, void* unused) {
  (void)self;
  TRACE("files open request %d %d\n", asked == &request, unused == NULL);
  return OK;
}
static const Slot filesSlots[] = {BASE, (Slot)FilesInit, (Slot)Cancel, (Slot)GetFileObject, NO};

static int32_t SetURL(Object* self, const char* url) {
  (void)self;
  TRACE("request %s\n", url);
  return OK;
}
static const Slot requestSlots[] = {BASE, NO, NO, NO, NO, (Slot)SetURL, NO};

static int32_t FileInit(Object* self, uint32_t flags, void* response) {
  TRACE("file flags %u\n", flags);
  Keep(self, response);
  return OK;
}
static int32_t FileClose(Object* self) {
  (void)self;
  TRACE("file close\n");
  return OK;
}
static int32_t FileRead(Object* self, uint32_t count) {
  (void)self;
  TRACE("file read %u\n", count);
  return OK;
}
static const Slot fileSlots[] = {BASE, (Slot)FileInit, NO, (Slot)FileClose, (Slot)FileRead, NO, NO};

/* --- The movie and its packets --- */

static uint8_t movie[256];
static uint32_t length, bounds[5], frames; /* where frames begin, and the end */

static void Byte(int byte) {
  movie[length++] = (uint8_t)byte;
}
static void Tag(int code, int size) {
  Byte((code << 6 | size) & 255);
  Byte((code << 6 | size) >> 8);
}
static void Frame(int red, int green, int blue) {
  Tag(9, 3);
  Byte(red);
  Byte(green);
  Byte(blue);
  Tag(1, 0);
  bounds[++frames] = length;
}
/* Four frames of 40 by 30 pixels, ten a second, each of another colour; the third
 * one asks for another movie. */
static void MakeMovie(void) {
  static const char action[] = "\x83\x0E\0a.vxf\0_level1\0";
  memcpy(movie, "VXF\x04\0\0\0\0", 8);
  length = 8;
  /* The frame: 11 bits a number, in twips. */
  uint64_t bits = 11;
  const uint32_t sides[] = {0, 800, 0, 600};
  for (int i = 0; i < 4; ++i) bits = bits << 11 | sides[i];
  bits <<= 7; /* 49 bits, filled up to 56 */
  for (int shift = 48; shift >= 0; shift -= 8) Byte((int)(bits >> shift & 255));
  Byte(0);
  Byte(10);
  Byte(4);
  Byte(0);
  bounds[0] = length;
  Frame(200, 0, 0);
  Frame(0, 200, 0);
  Tag(12, sizeof action);
  for (size_t i = 0; i < sizeof action; ++i) Byte(action[i]);
  Frame(0, 0, 200);
  Frame(1, 2, 3);
  Tag(0, 0);
  bounds[4] = length;
  movie[4] = (uint8_t)length;
}

/* Whole frames. */
static void Put(void* renderer, int first, int last) {
  uint8_t bytes[16 + sizeof movie] = {0};
  const uint32_t from = bounds[first], size = bounds[last + 1] - from;
  bytes[3] = (uint8_t)from;
  bytes[5] = (uint8_t)first;
  bytes[7] = (uint8_t)last;
  memcpy(bytes + 16, movie + from, size);
  Object* packet = Make(PACKET);
  packet->buffer = MakeBuffer(bytes, 16 + size);
  Expect(CALL(5, renderer, packet, 0) == OK, "OnPacket");
  Release(packet);
}

static double Now(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return (double)now.tv_sec + (double)now.tv_nsec / 1e9;
}
/* Waits behind it until the next one is let through. */
static void Sync(void* renderer, uint32_t time) {
  const double start = Now();
  Expect(CALL(6, renderer, time) == OK, "OnTimeSync");
  const double seconds = 2 * (Now() - start) + 0.005;
  const struct timespec rest = {(time_t)seconds, (long)((seconds - (double)(time_t)seconds) * 1e9)};
  nanosleep(&rest, NULL);
}

#define OBJECT(variable, kind_) \
  (variable.table = variable##Slots, variable.name = #variable, variable.kind = kind_)

static void MakeHost(void) {
  OBJECT(factory, FACTORY);
  OBJECT(errors, ERRORS);
  OBJECT(preferences, PREFERENCES);
  OBJECT(menu, MENU);
  OBJECT(navigate, NAVIGATE);
  OBJECT(scheduler, SCHEDULER);
  OBJECT(player, UNKNOWN);
  OBJECT(stream, UNKNOWN);
  OBJECT(source, UNKNOWN);
  OBJECT(backChannel, BACK_CHANNEL);
  OBJECT(site, UNKNOWN);
  OBJECT(surface, UNKNOWN);
  OBJECT(supplier, MULTI_SUPPLIER);
  OBJECT(files, FILES);
  OBJECT(request, REQUEST);
  OBJECT(file, FILE_OBJECT);
  static const Slot contextSlots[] = {BASE};
  OBJECT(context, UNKNOWN);
}

static void Load(void) {
  Expect(CALL(1, files.held, OK) == OK, "InitDone of the manager");
  Expect(CALL(2, files.held, OK, &file) == OK, "FileObjectReady");
  LetGo(&files);
  void* response = file.held;
  Expect(CALL(1, response, OK) == OK, "InitDone of the file");
  Object* bytes = MakeBuffer(movie, length);
  Expect(CALL(3, response, OK, bytes) == OK, "ReadDone");
  Release(bytes);
  Expect(CALL(4, response, OK) == UNEXPECTED, "WriteDone, unasked");
  Expect(CALL(5, response, OK) == OK, "SeekDone");
  Expect(CALL(2, response, OK) == OK, "CloseDone");
  Expect(CALL(2, response, OK) == UNEXPECTED, "CloseDone again");
  LetGo(&file);
}

static void Advise(void* sink) {
  Expect(CALL(1, sink, 5, 6) == OK, "OnPosLength");
  for (int n = 2; n <= 4; ++n) Expect(CALL0(n, sink) == OK, "advice without arguments");
  Expect(CALL(5, sink, 1, 2) == OK && CALL(6, sink, 1, 2) == OK, "advice of seeks");
  Expect(CALL0(7, sink) == OK, "OnStop");
  Expect(CALL(8, sink, 1) == OK && CALL(9, sink, 1) == OK, "OnPause, OnBegin");
  Expect(CALL(10, sink, 1, 2) == OK && CALL(11, sink, "host") == OK, "OnBuffering, OnContacting");
}

static void Play(void* unknown) {
  void *plugin = Query(unknown, PLUGIN), *renderer = Query(unknown, RENDERER),
       *user = Query(unknown, SITE_USER);
  int32_t multiple = 0;
  const char *texts[3] = {NULL, NULL, NULL}, *const *types = NULL;
  uint32_t version = 0, granularity = 0, type = 0;
  Object* info = NULL;
  Expect(CALL(1, plugin, &multiple, &texts[0], &texts[1], &texts[2], &version) == OK &&
             multiple == 1 && texts[0] && texts[1] && texts[2] && version == 0x6000747E,
         "GetPluginInfo");
  Expect(CALL(3, renderer, NULL) == UNEXPECTED, "EndStream before InitPlugin");
  Expect(CALL(2, plugin, &context) == OK, "InitPlugin");
  Expect(CALL(1, renderer, &types, &granularity) == OK && granularity == 100 && !types[2] &&
             strcmp(types[1], "application/x-brightarc-vexel2") == 0,
         "GetRendererInfo");
  Expect(CALL(2, renderer, &stream, &player) == OK, "StartStream");
  Object values = {valuesSlots, "values", VALUES, 1, NULL, 0, MakeBuffer(movie, bounds[0]),
                   0,           NULL};
  Expect(CALL(4, renderer, &values) == OK, "OnHeader");
  Expect(CALL(12, renderer, &type, &info) == OK && type == 7 && !info, "GetDisplayType");
  site.held = user;
  Expect(CALL0(4, user) == 0, "NeedsWindowedSites");
  Expect(CALL(1, user, &site) == OK && CALL(1, user, &site) == UNEXPECTED, "AttachSite");
  Expect(Draw() == 0, "nothing to draw yet");
  Put(renderer, 0, 0);
  Put(renderer, 2, 3);
  for (uint32_t time = 0; time < 500; time += 100) Sync(renderer, time);
  Expect(copies > 0 && (pixel & 0xFFFFFF) == 0xC80000, "the picture");
  Load();
  Advise(player.held);
  Expect(CALL(7, renderer, 400, 0) == OK && CALL(8, renderer, 400, 0) == OK, "a seek");
  Sync(renderer, 0);
  Expect((pixel & 0xFFFFFF) == 0xC80000, "the first frame's colour");
  Expect(CALL(9, renderer, 0) == OK && CALL(10, renderer, 0) == OK, "OnPause, OnBegin");
  Expect(CALL(11, renderer, 1, 50) == OK && CALL0(13, renderer) == OK,
         "OnBuffering, OnEndofPackets");
  Expect(CALL(1, menu.held, 20044) == OK && CALL0(2, menu.held) == OK, "the menu's answers");
  Sync(renderer, 1000);
  void* callback = scheduler.held;
  scheduler.held = NULL;
  Expect(callback && CALL0(1, callback) == OK, "Func");
  Release(callback);
  Expect(CALL0(3, renderer) == OK, "EndStream");
  Expect(CALL0(2, user) == OK, "DetachSite");
  Release(plugin);
  Release(renderer);
  Release(user);
  Release(values.buffer);
  Expect(Release(unknown) == 0, "the last reference");
}

/* The calls of the plug-in, in their order. */
static const char expected[] =
    "preference KestVexelDrawingMax\n"
    "preference KestVexelDrawingMin\n"
    "preference Quality\n"
    "menu Vexel Commands\n"
    "menu 20042 Zoom In 000\n"
    "menu 20030 Zoom Out 000\n"
    "menu 20046 100% 000\n"
    "menu 20034 Show All 000\n"
    "menu -\n"
    "menu 20028 High Quality 000\n"
    "menu -\n"
    "menu 20044 About Tanderon Vexel... 000\n"
    "menu response set\n"
    "preference Quality\n"
    "factory makes supplier\n"
    "supplier gets its user\n"
    "source\n"
    "url\n"
    "add sink\n"
    "header Duration\n"
    "header StreamVersion\n"
    "header ContentVersion\n"
    "header Duration\n"
    "header RendererFlags\n"
    "header NumPackets\n"
    "header OpaqueData\n"
    "site size 40 30\n"
    "request: time 0 stream 7 flags 1 rule 0\n"
    "send 12 bytes: 7 at 26\n"
    "damage 0 0 2000 2000\n"
    "damage 0 0 2000 2000\n"
    "redraw\n"
    "copy 52: 40x30 1 32 from 0 0 40 30 to 0 0 40 30\n"
    "redraw\n"
    "copy 52: 40x30 1 32 from 0 0 40 30 to 0 0 40 30\n"
    "factory makes files\n"
    "files start\n"
    "damage 0 0 2000 2000\n"
    "redraw\n"
    "copy 52: 40x30 1 32 from 0 0 40 30 to 0 0 40 30\n"
    "redraw\n"
    "copy 52: 40x30 1 32 from 0 0 40 30 to 0 0 40 30\n"
    "factory makes request\n"
    "request http://host/folder/a.vxf\n"
    "files open request 1 1\n"
    "file flags 5\n"
    "file read 2048\n"
    "file close\n"
    "navigate about _top\n"
    "factory makes files\n"
    "files start\n"
    "schedule 100\n"
    "schedule 100\n"
    "remove sink\n"
    "remove timer\n"
    "supplier lets go\n"
    "files cancel\n"
    "menu response cleared\n";

int main(int count, char** arguments) {
  if (count != 2) {
    fprintf(stderr, "table_client LIBRARY\n");
    return 2;
  }
  void* library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    fprintf(stderr, "table_client: %s\n", dlerror());
    return 1;
  }
  int32_t (*create)(void** out);
  *(void**)&create = dlsym(library, "ZEMCreateInstance");
  MakeMovie();
  MakeHost();
  void* unknown = NULL;
  if (!create || create(NULL) != (int32_t)0x80070057 || create(&unknown) != OK) return 1;
  Play(unknown);
  Object* const all[] = {&context, &factory, &errors,   &preferences, &menu,     &navigate,
                         &player,  &stream,  &source,   &backChannel, &site,     &surface,
                         &files,   &request, &supplier, &file,        &scheduler};
  for (size_t i = 0; i < sizeof all / sizeof *all; ++i) Expect(all[i]->refs == 0, all[i]->name);
  Expect(alive == 0, "buffers and packets are left");
  if (strcmp(trace, expected) != 0) {
    Expect(0, "the calls differ:");
    fputs(trace, stderr);
  }
  return failures != 0;
}
