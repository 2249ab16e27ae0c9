// What each fuzz target does with its input. The same functions replay the
// inputs that once failed, in the ordinary tests.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vexel::fuzz {

// A whole movie: pushed in pieces, played, drawn, sought and zoomed.
void FuzzMovie(const uint8_t* data, size_t size);

// A bitmap: the first byte chooses the kind, the rest is its body; a shape is
// filled with it. For a JPEG with shared tables, two bytes more tell the
// length of the tables that follow them (0 takes good ones).
void FuzzBitmap(const uint8_t* data, size_t size);

// A vector picture to import.
void FuzzSvg(const uint8_t* data, size_t size);

// A TrueType or OpenType font to embed.
void FuzzFont(const uint8_t* data, size_t size);

// Actions as text. The first byte chooses: bytes to print and assemble again,
// mnemonics to assemble, or a script to compile.
void FuzzActionsText(const uint8_t* data, size_t size);

// A text to make a movie of.
void FuzzMake(const uint8_t* data, size_t size);

// A movie to print as text, and to make of that text again.
void FuzzDump(const uint8_t* data, size_t size);

// A movie to check.
void FuzzCheck(const uint8_t* data, size_t size);

// Action blocks, each behind its length in 16 bits: they become the frames' and
// the button's of a small movie, which is played and clicked.
void FuzzActions(const uint8_t* data, size_t size);

// Packets for the reassembler, beside its plain twin. A head of 4 bytes (mode,
// where packets start, the file's length), then one piece after another: a byte
// for what it is and its time, and for a packet its length in 16 bits.
void FuzzPackets(const uint8_t* data, size_t size);

// A script of `vexel run` for a small movie.
void FuzzRun(const uint8_t* data, size_t size);

// HTTP messages, parsed, written, and sent to the POST server.
void FuzzHttp(const uint8_t* data, size_t size);

// POST data: fields to a list of values.
void FuzzOptions(const uint8_t* data, size_t size);

// Text fields, fonts, and what is done to them: see field_input.h.
void FuzzField(const uint8_t* data, size_t size);

// Calls of a client to the plug-in, with all that its host offers.
void FuzzSession(const uint8_t* data, size_t size);

struct Target {
  const char* name;  // of the folder of its inputs in fuzz/regress
  void (*run)(const uint8_t* data, size_t size);
};

inline constexpr Target kTargets[] = {
    {"movie", FuzzMovie},
    {"bitmap", FuzzBitmap},
    {"svg", FuzzSvg},
    {"font", FuzzFont},
    {"actions_text", FuzzActionsText},
    {"make", FuzzMake},
    {"dump", FuzzDump},
    {"check", FuzzCheck},
    {"actions", FuzzActions},
    {"packets", FuzzPackets},
    {"run", FuzzRun},
    {"http", FuzzHttp},
    {"options", FuzzOptions},
    {"field", FuzzField},
    {"session", FuzzSession},
};

}  // namespace vexel::fuzz
