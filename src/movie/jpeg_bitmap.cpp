// JPEG bitmaps. The movie may hold one stream of tables that its images share;
// other images bring their own. Damaged data decodes as far as it goes: an end
// marker is supplied where bytes run out, nothing is ever printed, and an error
// that the library cannot go on from leaves through a longjmp.
#include <cstdlib>
#include <cstring>
#include <new>

#include "movie/jpeg_play_state.h"
#include "movie/script_player.h"
#include "movie/sparser.h"
#include "movie/tags.h"

namespace vexel {

namespace {

// The longest side that a bitmap may have.
constexpr JDIMENSION kMaxSide = 32767;

constexpr JOCTET kEndOfImage[2] = {0xFF, JPEG_EOI};

JPEGPlayState* StateOf(void* clientData) {
  return static_cast<JPEGPlayState*>(clientData);
}

[[noreturn]] void ErrorExit(j_common_ptr cinfo) {
  longjmp(StateOf(cinfo->client_data)->bail, 1);
}
void IgnoreMessage(j_common_ptr, int) {}
void IgnoreOutput(j_common_ptr) {}

void CheckScans(j_common_ptr common) {
  JPEGPlayState* state = StateOf(common->client_data);
  if (state->cinfo.input_scan_number > kMaxJPEGScans) longjmp(state->bail, 1);
}

void IgnoreSource(j_decompress_ptr) {}

boolean FillInput(j_decompress_ptr cinfo) {
  JPEGPlayState* state = StateOf(cinfo->client_data);
  const int32_t got = state->parser->GetData(state->input, kJPEGInputBytes);
  state->source.next_input_byte = got > 0 ? state->input : kEndOfImage;
  state->source.bytes_in_buffer = got > 0 ? static_cast<size_t>(got) : sizeof kEndOfImage;
  return TRUE;
}

void SkipInput(j_decompress_ptr cinfo, long count) {
  jpeg_source_mgr* source = cinfo->src;
  if (count <= 0) return;
  size_t left = static_cast<size_t>(count);
  while (left > source->bytes_in_buffer) {
    left -= source->bytes_in_buffer;
    FillInput(cinfo);
  }
  source->next_input_byte += left;
  source->bytes_in_buffer -= left;
}

void FeedFrom(JPEGPlayState* state, SParser* parser) {
  state->parser = parser;
  state->source.bytes_in_buffer = 0;
}

void FreeRow(JPEGPlayState* state) {
  free(state->row);
  state->row = nullptr;
}

uint16_t Pixel16(const JSAMPLE* rgb) {
  return static_cast<uint16_t>((rgb[0] & 248) << 7 | (rgb[1] & 248) << 2 | rgb[2] >> 3);
}
uint32_t Pixel32(const JSAMPLE* rgb) {
  return 0xFF000000u | uint32_t{rgb[0]} << 16 | uint32_t{rgb[1]} << 8 | uint32_t{rgb[2]};
}

void StoreRow(const JSAMPLE* rgb, SBitmapCore* bits, int32_t y) {
  uint8_t* out = bits->baseAddr + int64_t{y} * bits->rowBytes;
  const bool deep = bits->bmFormat == bm32Bit;
  for (int32_t x = 0; x < bits->width; ++x, rgb += 3) {
    if (deep) {
      const uint32_t pixel = Pixel32(rgb);
      memcpy(out + 4 * x, &pixel, sizeof pixel);
    } else {
      const uint16_t pixel = Pixel16(rgb);
      memcpy(out + 2 * x, &pixel, sizeof pixel);
    }
  }
}

// What runs inside the reach of the longjmp: it holds nothing that would have
// to be released on the way. False when the picture is not to be had.
bool DecodeImage(JPEGPlayState* state, SCharacter* character, bool withAlpha, bool headerRead) {
  jpeg_decompress_struct* cinfo = &state->cinfo;
  if (!headerRead && jpeg_read_header(cinfo, TRUE) != JPEG_HEADER_OK) return false;
  if (cinfo->num_components != 1 && cinfo->num_components != 3) return false;

  // Before the library takes memory by the size that the file claims.
  if (cinfo->image_width > kMaxSide || cinfo->image_height > kMaxSide) return false;
  if (!character->player->CreateBits(character, withAlpha ? bm32Bit : bm16Bit,
                                     static_cast<int32_t>(cinfo->image_width),
                                     static_cast<int32_t>(cinfo->image_height), nullptr)) {
    state->noMemory = true;
    return false;
  }
  state->row = static_cast<JSAMPLE*>(malloc(3 * size_t{cinfo->image_width}));
  state->noMemory = !state->row;
  if (!state->row) return false;

  // A grey picture is delivered with its value in all three components.
  cinfo->out_color_space = JCS_RGB;
  jpeg_start_decompress(cinfo);
  while (cinfo->output_scanline < cinfo->output_height) {
    const int32_t y = static_cast<int32_t>(cinfo->output_scanline);
    if (jpeg_read_scanlines(cinfo, &state->row, 1) != 1) return false;
    StoreRow(state->row, &character->bits, y);
  }
  jpeg_finish_decompress(cinfo);
  return true;
}

bool TryImage(JPEGPlayState* state, SCharacter* character, bool withAlpha, bool headerRead) {
  if (setjmp(state->bail)) return false;
  return DecodeImage(state, character, withAlpha, headerRead);
}

}  // namespace

JPEGHeader ReadJPEGTables(JPEGPlayState* state, SParser* parser) {
  memset(state, 0, sizeof *state);
  state->cinfo.err = jpeg_std_error(&state->errors);
  state->errors.error_exit = ErrorExit;
  state->errors.emit_message = IgnoreMessage;
  state->errors.output_message = IgnoreOutput;
  state->cinfo.client_data = state;
  if (setjmp(state->bail)) {
    if (state->cinfo.mem) jpeg_abort_decompress(&state->cinfo);
    return JPEGHeader::kBad;
  }
  jpeg_create_decompress(&state->cinfo);
  state->progress.progress_monitor = CheckScans;
  state->cinfo.progress = &state->progress;
  state->source.init_source = IgnoreSource;
  state->source.fill_input_buffer = FillInput;
  state->source.skip_input_data = SkipInput;
  state->source.resync_to_restart = jpeg_resync_to_restart;
  state->source.term_source = IgnoreSource;
  state->cinfo.src = &state->source;
  FeedFrom(state, parser);
  const int found = jpeg_read_header(&state->cinfo, FALSE);
  return found == JPEG_HEADER_OK ? JPEGHeader::kImage : JPEGHeader::kTables;
}

bool ReadJPEGImage(JPEGPlayState* state, SCharacter* character, bool withAlpha, bool headerRead) {
  state->noMemory = false;
  const bool good = TryImage(state, character, withAlpha, headerRead);
  FreeRow(state);
  jpeg_abort_decompress(&state->cinfo);  // keeps the tables
  if (!good) {
    character->player->FreeBits(character);
    if (!state->noMemory) character->damaged = true;
  }
  return good;
}

void FreeJPEGState(JPEGPlayState* state) {
  jpeg_destroy_decompress(&state->cinfo);
}

// A second stream of tables is ignored.
void ScriptThread::DefineJPEGTables() {
  if (player->jpegInfo) return;
  auto* state = new (std::nothrow) JPEGPlayState;
  if (!state) return;
  ReadJPEGTables(state, this);
  if (!state->cinfo.mem) {
    delete state;
    return;
  }
  jpeg_abort_decompress(&state->cinfo);  // what follows the tables is of no use
  player->jpegInfo = state;
}

void ScriptPlayer::FreeJPEGInfo() {
  if (!jpegInfo) return;
  FreeJPEGState(jpegInfo);
  delete jpegInfo;
  jpegInfo = nullptr;
}

void ScriptPlayer::BuildJPEG(SCharacter* character, SParser* parser, int32_t code) {
  if (code == kTagDefineBits) {
    if (!jpegInfo) return;
    FeedFrom(jpegInfo, parser);
    ReadJPEGImage(jpegInfo, character, false, false);
    return;
  }

  const bool withAlpha = code == kTagDefineBitsJPEGAlpha;
  const int32_t bodyEnd = parser->tagEnd;
  if (withAlpha) {
    const int64_t length = parser->GetDWord();
    if (parser->pos + length < bodyEnd) parser->tagEnd = static_cast<int32_t>(parser->pos + length);
  }
  const int32_t jpegEnd = parser->tagEnd;
  JPEGPlayState state;
  const JPEGHeader header = ReadJPEGTables(&state, parser);
  if (header == JPEGHeader::kBad) character->damaged = true;
  const bool good = header != JPEGHeader::kBad &&
                    ReadJPEGImage(&state, character, withAlpha, header == JPEGHeader::kImage);
  FreeJPEGState(&state);
  if (!good || !withAlpha) return;

  // The alpha plane lies behind the stream, wherever the decoder stopped.
  parser->pos = jpegEnd;
  parser->tagEnd = bodyEnd;
  BuildAlpha(character, parser);
}

}  // namespace vexel
