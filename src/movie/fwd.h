// The shared names of the ring: movie, stage, text and player declare each
// other's types here and include nothing upward.
#pragma once

namespace vexel {

class DataBlock;
class DataRef;
class SParser;
class SShapeParser;
class ScriptThread;
class ScriptPlayer;
class SPlayer;
class PlayObserver;
struct SCharacter;
struct ScriptVariable;
struct JPEGPlayState;

class DisplayList;
struct SObject;
struct PlaceInfo;
struct STransform;
class ActionList;
class SCharacterParser;
class SStroker;

class EditText;

class CRaster;
struct REdge;
struct RColor;

}  // namespace vexel
