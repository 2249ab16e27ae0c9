#include <random>

#include "movie/tags.h"
#include "stage/button.h"
#include "support/stage_fixture.h"

namespace vexel::test {
namespace {

using author::Bytes;

class ButtonRecords : public StageFixture {
 protected:
  SCharacter* Button(const Bytes& data, uint8_t code) {
    SCharacter* button = Define(nextId++, charButton);
    button->tagCode = code;
    button->data = CopyBytes(data);
    return button;
  }
  SCharacter* First(const Bytes& data) { return Button(data, kTagDefineButton); }
  SCharacter* Second(const Bytes& data) { return Button(data, kTagDefineButton2); }

  int CountRecords(const SCharacter* button) {
    ButtonRecordReader reader(button, &stage);
    ButtonRecord record;
    int count = 0;
    while (reader.Next(&record)) ++count;
    return count;
  }
  // Condition words of all action records.
  static std::string Conditions(const SCharacter* button) {
    std::string out;
    ButtonActionReader reader(button);
    while (reader.Next()) out += std::to_string(reader.conditions) + ' ';
    return out;
  }
  uint16_t nextId = 1;
};

TEST_F(ButtonRecords, AreReadInBothForms) {
  author::Cxform cxform;
  cxform.redMul = 9;
  const std::vector<author::ButtonRecord> records = {
      {author::kButtonUp, 3, 4, author::Matrix::Translate(5, -6), cxform},
      {author::kButtonHit | author::kButtonDown, 7, 65535, {}, {}}};
  author::BitWriter first;
  author::WriteButton(first, records, {0x07, 0});
  author::BitWriter second;
  author::WriteButton2(second, true, records, {{4, {0x07, 0}}});
  Bytes secondData = second.Take();
  secondData.erase(secondData.begin());  // the menu flag is the definition's

  for (const SCharacter* button : {First(first.Take()), Second(secondData)}) {
    ButtonRecordReader reader(button, &stage);
    ButtonRecord record;
    ASSERT_TRUE(reader.Next(&record));
    EXPECT_EQ(record.states, 1);
    EXPECT_EQ(record.id, 3);
    EXPECT_EQ(record.layer, 4);
    EXPECT_EQ(record.mat.tx, 5);
    EXPECT_EQ(record.mat.ty, -6);
    EXPECT_EQ(record.cxform.ra, IsSecondButtonForm(button) ? 9 : 256);
    ASSERT_TRUE(reader.Next(&record));
    EXPECT_EQ(record.states, 12);
    EXPECT_EQ(record.layer, 65535);
    EXPECT_FALSE(reader.Next(&record));
  }
}

TEST_F(ButtonRecords, EndWithTheData) {
  EXPECT_EQ(CountRecords(First({})), 0);
  EXPECT_EQ(CountRecords(First({1})), 1) << "the rest of it reads as zeros";
  EXPECT_EQ(CountRecords(Second({})), 0);
  EXPECT_EQ(CountRecords(Second({0, 0})), 0);
  EXPECT_EQ(CountRecords(Second({0, 0, 1, 0, 0, 0, 0, 0, 0})), 1);
  SCharacter* none = Define(99, charButton);
  EXPECT_EQ(CountRecords(none), 0);
  EXPECT_EQ(ButtonActionBlock(none).bytes, nullptr);
  EXPECT_EQ(Conditions(none), "");
}

TEST_F(ButtonRecords, TheActionBlockOfTheFirstFormStandsBehindThem) {
  const SCharacter* button = First({1, 2, 0, 3, 0, 0, 0, 0x07, 0});
  const DataSpan block = ButtonActionBlock(button);
  ASSERT_NE(block.bytes, nullptr);
  EXPECT_EQ(block.bytes[0], 0x07);
  EXPECT_EQ(block.length, 2) << "to the end of the data";
  EXPECT_EQ(ButtonActionBlock(First({1, 2, 0, 3, 0})).bytes, nullptr) << "cut off";
}

TEST_F(ButtonRecords, AFirstOffsetOf0SaysThatThereAreNoActions) {
  EXPECT_EQ(Conditions(Second({0, 0, 0, 0, 0, 4, 0, 7, 0})), "");
}

TEST_F(ButtonRecords, OffsetsCountFromTheirOwnPosition) {
  const SCharacter* button = Second({3, 0, 0, 6, 0, 1, 0, 7, 0, 0, 0, 2, 0, 8, 0});
  EXPECT_EQ(Conditions(button), "1 2 ");
  ButtonActionReader reader(button);
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.block.bytes[0], 7);
  EXPECT_EQ(reader.block.length, 8) << "to the end of the data";
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.block.bytes[0], 8);
}

TEST_F(ButtonRecords, ChainsOfOverlappingOrWildOffsetsEndWithTheData) {
  const SCharacter* overlapping = Second(Bytes(1000, 1));
  ButtonActionReader reader(overlapping);
  int steps = 0;
  while (reader.Next()) ++steps;
  EXPECT_LE(steps, 1000);
  EXPECT_GT(steps, 1);
  EXPECT_EQ(Conditions(Second({0xFF, 0xFF, 0})), "0 ") << "a record beyond the data is empty";
  ButtonActionReader beyond(Second({0xFF, 0xFF, 0}));
  ASSERT_TRUE(beyond.Next());
  EXPECT_EQ(beyond.block.bytes, nullptr);
}

TEST_F(ButtonRecords, AWalkKeepsItsBytes) {
  SCharacter* button = Second({3, 0, 0, 0, 0, 1, 0, 7, 0});
  ButtonActionReader actions(button);
  ButtonRecordReader records(button, &stage);
  button->data = {};
  ASSERT_TRUE(actions.Next());
  EXPECT_EQ(actions.conditions, 1);
  ButtonRecord record;
  EXPECT_FALSE(records.Next(&record));
}

TEST_F(ButtonRecords, RandomBytesAreWalkedToAnEnd) {
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    Bytes data(random() % 64);
    for (uint8_t& byte : data) byte = static_cast<uint8_t>(random() % 3 ? random() : random() % 4);
    SCharacter* button = round & 1 ? First(data) : Second(data);
    EXPECT_LE(CountRecords(button), 64);
    EXPECT_LE(Conditions(button).size(), 64u * 6);
    const DataSpan block = ButtonActionBlock(button);
    EXPECT_LE(block.length, 64);
    SObject* object = Place(1, button);
    for (int state = 0; state <= buttonPressedOutside; ++state) {
      stage.UpdateButton(object, state);
      stage.DoButtonAction(object, state);
    }
    SRECT bounds;
    object->CalcButtonBounds(&bounds);
    stage.RemoveObject(object);
    player.FreeCharacter(button->id);
  }
}

}  // namespace
}  // namespace vexel::test
