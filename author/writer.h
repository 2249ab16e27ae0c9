// The movie writer: typed tags, packed bit for bit.
//
// A movie is a MovieWriter, which is a TagStream; a sprite is a TagStream of
// its own. Shapes come from a ShapeBuilder, morphs from a MorphBuilder, action
// blocks from an ActionBuilder:
//
//   MovieWriter movie(200, 100);
//   ShapeBuilder box;
//   box.Style(box.AddFill(Color{200, 40, 40})).Rectangle(Rect::Pixels(10, 10, 60, 60));
//   movie.DefineShape(1, box).Place(1, 1).FrameEnd().End();
//   Bytes file = movie.Finish();
//
// Everything that a reader might stumble over can be forced: widths of fields,
// long headers, counts and lengths that lie, tags of any content. Values that a
// field cannot hold throw std::range_error.
#pragma once

#include "author/action_builder.h"
#include "author/bit_writer.h"
#include "author/bitmap.h"
#include "author/button.h"
#include "author/font.h"
#include "author/morph_builder.h"
#include "author/movie_writer.h"
#include "author/records.h"
#include "author/shape.h"
#include "author/shape_builder.h"
#include "author/tag_stream.h"
#include "author/text.h"
#include "author/types.h"
