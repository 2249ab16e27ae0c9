// The edges that cross a pixel row, in all four of its sub-scanlines at once.
//
// A row becomes a list of events: an edge meets these lanes at these x. Within
// each lane the events are in ascending x. As a rule one event stands for an
// edge in all four lanes. Where edges cross inside the row, one of them takes
// two events; where an edge ends and another carries its outline on, the two
// share one.
//
// The order among events of equal x in a lane is any for most pictures: no span
// lies between them, and what they switch comes out the same. Only a count may
// pass through 0 in one order and not in another, which ends a span there. Where
// that can show, rows in which edges start are made in the exact order: that of
// the list the plain way keeps, with its way of finding a new edge's place.
#pragma once

#include <cstdint>

#include "raster/lanes.h"

namespace vexel {

class CRaster;
struct REdge;
struct RColor;

// The number of no colour.
inline constexpr int32_t kNoColor = -1;

struct RowEvent {
  Lanes x;         // where the edge meets each lane, device units
  LaneMask mask;   // the lanes that count
  int32_t edge;    // the number of the edge in the last of its lanes
  int32_t color1;  // by number (RColor::rank), or kNoColor
  int32_t color2;
  uint8_t rule;  // FillRule
  int8_t dir;

  bool SameEffect(const RowEvent& o) const {
    return color1 == o.color1 && color2 == o.color2 && rule == o.rule && dir == o.dir;
  }
};

class RowEdges {
 public:
  RowEdges() = default;
  ~RowEdges();
  RowEdges(const RowEdges&) = delete;
  RowEdges& operator=(const RowEdges&) = delete;

  // Forgets all edges. `exactOrder` asks for the order of the plain way among
  // edges of equal x.
  void Reset(bool exactOrder);

  // Goes on to the pixel row that begins at scanline y, a multiple of 4, which
  // must follow the row before: takes up the edges that start in it, and makes
  // its events. False without memory.
  [[nodiscard]] bool BuildRow(CRaster* raster, int32_t y);

  bool Empty() const { return nEvents_ == 0; }
  const RowEvent* begin() const { return events_; }
  const RowEvent* end() const { return events_ + nEvents_; }

 private:
  // An edge under way. A line uses x and xStep alone.
  struct Edge {
    int32_t xl, xStep, xStepStep;
    int32_t yl, yStep, yStepStep;
    int32_t t;
    int32_t ymax;
    int32_t color1, color2;
    bool isLine;
    uint8_t rule;
    int8_t dir;
  };

  // An edge that starts in the row.
  struct Start {
    RowEvent event;
    int32_t lane;  // its first
    int32_t key;   // its x in its last lane
  };

  bool Reserve(int32_t nStarting);
  bool ReserveExact(int32_t n);
  bool ReserveEvents(int32_t n);
  int32_t NewEdge();
  bool TakeUp(CRaster* raster, int32_t y);
  void StepEdge(int32_t i, int32_t y, RowEvent* event);
  void Insert(const RowEvent& event);
  void Place(const RowEvent& event, LaneMask mask, int32_t at);
  void SplitByLane();
  void KeepOrder(int32_t y);
  void BuildSorted(int32_t y);
  void BuildExact(int32_t y);
  void TakeInto(int32_t lane, int32_t* list, int32_t* n);
  void SortLane(int32_t lane, int32_t* list, int32_t n);
  void JoinLanes(const int32_t* n);

  bool exactOrder_ = false;
  Edge* edges_ = nullptr;
  int32_t edgeRoom_ = 0;
  int32_t nEdges_ = 0;       // numbers given out
  int32_t* free_ = nullptr;  // numbers to give out again
  int32_t nFree_ = 0;
  int32_t* order_ = nullptr;  // the edges that go on, as they stood in the last lane
  int32_t nOrder_ = 0;
  RowEvent* events_ = nullptr;
  int32_t eventRoom_ = 0;
  int32_t nEvents_ = 0;
  Start* starts_ = nullptr;
  int32_t startRoom_ = 0;
  int32_t nStarts_ = 0;
  int32_t exactRoom_ = 0;          // of the two below
  RowEvent* crossings_ = nullptr;  // in an exact row, by number of the edge
  int32_t* lists_[kLanes] = {};    // in an exact row, the edges of each lane in order
  int64_t steps_ = 0;              // left for finding places in this row
};

}  // namespace vexel
