#include "platform/sim/scenario/Lexer.h"

#include <gtest/gtest.h>

using tarnwick::Rect;
using namespace tarnwick::sim;

TEST(Lexer, ReadsStatements) {
    EXPECT_EQ(stripComment(R"(app 1 "say \"#1\" # not yet" # comment)"),
              R"(app 1 "say \"#1\" # not yet" )");
    Cursor c(R"(  window 501 "Tab \"one\"\u00e9" +100,-25.5,800,.5  element=7)");
    EXPECT_EQ(c.word("a verb"), "window");
    EXPECT_EQ(c.integer("a pid"), 501);
    EXPECT_EQ(c.string("a title"), "Tab \"one\"\u00e9");
    EXPECT_EQ(c.rect("a frame"), (Rect{100, -25.5, 800, 0.5}));
    EXPECT_EQ(c.options({"element"}, {}), (std::map<std::string, std::string>{{"element", "7"}}));
    EXPECT_TRUE(c.atEnd());
}

TEST(Lexer, RejectsMalformedStatements) {
    using Step = std::function<void(Cursor&)>;
    const std::vector<std::pair<Step, std::vector<std::string>>> cases{
        {[](Cursor& c) { c.string("a title"); },
         {R"("open)", R"("ends with \")", R"("a"b)", R"("\q")", "bare"}},
        {[](Cursor& c) { c.number("a number"); }, {"1e3", "0x10", "five"}},
        {[](Cursor& c) { c.integer("a pid"); }, {"1.5"}},
        {[](Cursor& c) { c.rect("a frame"); }, {"1,2,3", "1,2,3,4,5", "1,2,3,4,"}},
        {[](Cursor& c) { c.options({"bundle"}, {"slow"}); }, {"fast", "slow=1", "bundle="}},
        {[](Cursor& c) { c.jsonRest("a value"); }, {"data:7", "{broken"}},
        {[](Cursor& c) { c.end(); }, {"extra"}},
    };
    for (const auto& [step, texts] : cases)
        for (const auto& text : texts) {
            Cursor c(text);
            EXPECT_THROW(step(c), ParseError) << text;
        }
}
