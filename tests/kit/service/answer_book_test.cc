// Which command gets which answer, with pieces that are whole, broken or missing.
#include "service/answer_book.h"

#include <gtest/gtest.h>

#include <sstream>

namespace corvis::kit {
namespace {

using std::chrono::milliseconds;

constexpr const char* kPiece = "partial_result";

struct Conversation {
  const char* name;
  // The actions that are sent, as the commands 1, 2 and so on: "C" asks for the context, the others don't.
  const char* commands;
  // What the page sends, "r" a result, "c" a context, or a total with a piece, and behind "=" what the
  // service hears by that: ID:ANSWER or ID! for a broken one.
  const char* messages;
  size_t owed;
};

constexpr Conversation kConversations[] = {
    {"first come, first served", "AB", "r:a=1:a r:b=2:b r:c=0:c", 0},
    {"contexts have their own road", "ACBC", "c:x=2:x r:a=1:a r:b=3:b c:y=4:y", 0},
    {"a context that the page refuses is a result", "C", "r:no=1:no", 0},
    {"a context that nobody asked for", "A", "c:x=0:x r:a=1:a", 0},
    {"pieces cut a letter, and are any bytes", "AB", "4:\xc3= 4:\xa9\xff= 4:\x01=1:\xc3\xa9\xff\x01", 1},
    {"another total begins the next answer", "AB", "6:aa= 4:bb=1! 4:BB=2:bbBB", 0},
    {"another total begins nothing", "AB", "6:aa= 4:xx=1! 4:xxx= r:b=2:b", 0},
    {"more bytes than the total", "AB", "6:aaaa= 6:aaaa=1! r:b=2:b", 0},
    {"a last piece that got lost", "AB", "6:aaaa= 6:bbbb=1! 6:bb=2:bbbbbb", 0},
    {"an answer that breaks off", "AB", "6:aa= r:b=1!,2:b", 0},
    {"no total", "AB", "0:aa=1! 0:aa= 0:aa= r:b=2:b", 0},
    {"an answer that is too large", "AB", "20000000:aa=1! 20000000:aa= 20000000:aa= r:b=2:b", 0},
    {"one too large, and one in pieces", "AB", "20000000:aa=1! 20000000:aa= 4:bb= 4:bb=2:bbbb", 0},
    {"broken pieces that nobody waits for", "", "1:aa=0! 3:aa= 3:aa=0!", 0},
};

std::string Heard(AnswerBook& book, const std::string& kind, const std::string& data) {
  const bool is_piece = kind != "r" && kind != "c";
  const char* word = is_piece ? kPiece : kind == "r" ? "result" : "appContext";
  std::string heard;
  for (const Answer& answer : book.Receive("app", word, data, is_piece ? std::stoul(kind) : 0, {})) {
    heard += (heard.empty() ? "" : ",") + std::to_string(answer.command_id);
    heard += answer.is_broken() ? "!" : ":" + answer.data;
    EXPECT_NE(answer.is_broken(), answer.problem.empty());
  }
  return heard;
}

TEST(AnswerBook, GivesEachCommandItsAnswer) {
  for (const Conversation& conversation : kConversations) {
    AnswerBook book;
    for (const char command : std::string(conversation.commands)) {
      book.Note("app", command == 'C' ? "ACTION_REQUEST_APP_CONTEXT" : std::string(1, command), {});
    }
    std::istringstream messages(conversation.messages);
    for (std::string message; messages >> message;) {
      const size_t colon = message.find(':');
      const size_t equals = message.find('=');
      EXPECT_EQ(Heard(book, message.substr(0, colon), message.substr(colon + 1, equals - colon - 1)),
                message.substr(equals + 1))
          << conversation.name << ": " << message;
    }
    EXPECT_EQ(book.Owed("app"), conversation.owed) << conversation.name;
  }
}

TEST(AnswerBook, KeepsApplicationsApartAndForgets) {
  AnswerBook book;
  book.Note("a", "A", {});
  const uint64_t unsent = book.Note("b", "B", {});
  const uint64_t sent = book.Note("b", "C", {});
  book.Forget("b", unsent);
  EXPECT_TRUE(book.Receive("a", kPiece, "a", 2, {}).empty());
  EXPECT_EQ(book.Receive("b", "result", "b", 0, {}).at(0).command_id, sent);
  book.Clear("a");
  EXPECT_EQ(book.Receive("a", "result", "a", 0, {}).at(0).command_id, 0U) << "nothing is left of the pieces";
}

// What applications send must not make the book grow without end.
TEST(AnswerBook, KeepsNoMoreThanItsLimits) {
  AnswerBook book;
  const uint64_t first = book.Note("app", "A", {});
  for (size_t i = 0; i < AnswerBook::kMostOwed; ++i) book.Note("app", "A", {});
  EXPECT_EQ(book.Owed("app"), AnswerBook::kMostOwed);
  EXPECT_EQ(book.Receive("app", "result", "", 0, {}).at(0).command_id, first + 1);

  for (size_t i = 0; i < 2 * AnswerBook::kMostApps; ++i) book.Receive(std::to_string(i), "result", "", 0, {});
  EXPECT_TRUE(book.Receive("one more", "result", "", 0, {}).empty());
  EXPECT_EQ(book.Receive("app", "result", "", 0, {}).size(), 1U);
}

TEST(AnswerBook, MeasuresFromTheCommandOn) {
  const Clock::time_point start;
  AnswerBook book;
  book.Note("app", "A", start);
  book.Receive("app", kPiece, "a", 2, start + milliseconds(10));
  const Answer answer = book.Receive("app", kPiece, "b", 2, start + milliseconds(30)).at(0);
  EXPECT_EQ(answer.first_piece, milliseconds(10));
  EXPECT_EQ(answer.took, milliseconds(30));
  EXPECT_EQ(answer.pieces, 2);
}

}  // namespace
}  // namespace corvis::kit
