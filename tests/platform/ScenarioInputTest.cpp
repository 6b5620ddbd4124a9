// Hostile scenario text: every input ends in a located refusal or a located
// fault, never in a crash or a silently different value.
#include "platform/sim/scenario/Scenario.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace tarnwick::sim;

namespace {

std::string parseError(const std::string& text) {
    try {
        parseScenario("t.scn", text);
    } catch (const ParseError& e) {
        return e.what();
    }
    return "accepted";
}

std::string zeros(size_t n) {
    return std::string(n, '0');
}

std::string join(std::initializer_list<std::string> parts) {
    std::string out;
    for (const auto& p : parts)
        out += p;
    return out;
}

std::string nested(size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

} // namespace

TEST(ScenarioInput, NumbersOfAnyLengthAreReadExactlyOrRefused) {
    // Long enough to have overflowed the stack of a recursive matcher.
    EXPECT_EQ(Cursor::parseNumber(join({"1.", zeros(100000)}), "n"), 1.0);
    EXPECT_EQ(Cursor::parseNumber(join({zeros(30000), "42"}), "n"), 42.0);
    EXPECT_EQ(Cursor::parseNumber("-.5", "n"), -0.5);
    EXPECT_EQ(Cursor::parseNumber("+5.", "n"), 5.0);
    EXPECT_EQ(Cursor::parseNumber(join({"17976931348623157", zeros(292)}), "n"),
              1.7976931348623157e308);

    for (const auto& text : {join({"1", zeros(309)}), join({"-", std::string(30000, '9')}),
                             join({"0.", zeros(400), "1"})}) {
        try {
            Cursor::parseNumber(text, "a width");
            ADD_FAILURE() << text.substr(0, 20) << " was read as a number";
        } catch (const ParseError& e) {
            EXPECT_EQ(std::string(e.what()).substr(0, 26), "a width is out of range: '")
                << e.what();
        }
    }
    for (const char* text :
         {"", "+", "-", ".", "-.", "1.2.3", "1e5", "1 ", "--1", "0x1", "inf", "nan"})
        EXPECT_THROW(Cursor::parseNumber(text, "n"), ParseError) << text;
}

TEST(ScenarioInput, WholeNumbersAreReadExactlyToTheEdgesOfTheirRange) {
    EXPECT_EQ(Cursor::parseInteger("9223372036854775807", "n", INT64_MIN, INT64_MAX), INT64_MAX);
    EXPECT_EQ(Cursor::parseInteger("-9223372036854775808", "n", INT64_MIN, INT64_MAX), INT64_MIN);
    EXPECT_EQ(Cursor::parseInteger("-0", "n", 0, 5), 0);
    EXPECT_EQ(Cursor::parseInteger("7.000", "n", 0, 7), 7);
    EXPECT_EQ(Cursor::parseUnsigned("18446744073709551615", "n"), UINT64_MAX);
    EXPECT_EQ(Cursor::parseUnsigned("-0.0", "n"), 0u);

    const std::vector<std::tuple<std::string, int64_t, int64_t>> outside{
        {"9223372036854775808", INT64_MIN, INT64_MAX},
        {"-9223372036854775809", INT64_MIN, INT64_MAX},
        {join({"1", zeros(400)}), INT64_MIN, INT64_MAX},
        {"-1", 0, 10},
        {"11", 0, 10},
        {"-4", -10, -5},
        {"0", 1, 10},
    };
    for (const auto& [text, min, max] : outside)
        EXPECT_THROW(Cursor::parseInteger(text, "n", min, max), ParseError) << text;
    for (const char* text : {"18446744073709551616", "-1", "1.5", "0.01"})
        EXPECT_THROW(Cursor::parseUnsigned(text, "n"), ParseError) << text;
}

TEST(ScenarioInput, JsonIsRefusedPastItsDepthLimit) {
    // Deep enough to have overflowed the stack while copying the statement.
    for (const std::string head : {"defaults k ", "defaults k data:", "launch\nset excluded ",
                                   "launch\nexpect defaults k "}) {
        const auto line = head.find('\n') == std::string::npos ? "1" : "2";
        EXPECT_EQ(parseError(head + nested(200000)),
                  "t.scn:" + std::string(line) + ": the value is nested deeper than 64 levels");
    }
    EXPECT_EQ(parseError("defaults k " + nested(maxJsonDepth)), "accepted");
    EXPECT_EQ(parseError("defaults k {\"a\":" + nested(maxJsonDepth) + "}"),
              "t.scn:1: the value is nested deeper than 64 levels");
}

TEST(ScenarioInput, StatementsRefuseValuesTheWorldCannotHold) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"screen 2 \"M\" 1440,0,0,900",
         "the screen's rectangle needs a width and a height above 0, found '1440,0,0,900'"},
        {"screen 2 \"M\" 0,0,100,100 visible=0,0,100,-5",
         "the visible rectangle needs a width and a height above 0, found '0,0,100,-5'"},
        {"screen 2 \"M\" 0,0,100,100 notch=0,32",
         "a notch needs a width and a height above 0, found '0,32'"},
        {"screen 2 \"M\\n0.000 status forged\" 0,0,100,100",
         "the screen's name holds a control character"},
        {"fail login \"no\\rway\"", "the error text holds a control character"},
        {"screen 2 \"M\x01\" 0,0,100,100",
         "a control character in the screen's name must be written as an escape"},
        {"screen 4294967296 \"M\" 0,0,100,100", "a screen ID is out of range: '4294967296'"},
        {"unplug -1", "a screen ID is out of range: '-1'"},
        {"app 2147483648 \"A\"", "a process identifier is out of range: '2147483648'"},
        {"window 1 \"W\" 0,0,1,1 number=9223372036854775808",
         "a window number is out of range: '9223372036854775808'"},
        {"window 1 \"W\" 0,0,1,1 layer=-9223372036854775809",
         "a layer is out of range: '-9223372036854775809'"},
        {"window 1 \"W\" 0,0,1,1 enter=1000000001", "enter may not pass 1000000000 seconds"},
        {"window 1 \"W\" 0,0,1,1 element=1 element=2", "option 'element=' given twice"},
        {"window 1 \"W\" 0,0,1,1 fullscreen fullscreen", "option 'fullscreen' given twice"},
        {"launch\nisland toggle 0", "rows are counted from 1"},
        {"launch\nisland toggle 18446744073709551616",
         "a row number is out of range: '18446744073709551616'"},
    };
    for (const auto& [text, message] : cases) {
        const auto line = text.find('\n') == std::string::npos ? "1" : "2";
        EXPECT_EQ(parseError(text), "t.scn:" + std::string(line) + ": " + message);
    }
    // Huge but finite sizes are a screen all the same.
    EXPECT_EQ(parseError("screen 2 \"M\" 0,0,10000000000000000000,1"), "accepted");
}

TEST(ScenarioInput, WaitsMayTakeTheClockToItsBoundAndNoFurther) {
    EXPECT_EQ(parseError("wait 999999999.5\nwait 0.5\n"), "accepted");
    EXPECT_EQ(parseError("wait 999999999.5\nwait 0.5\nwait 0.001\n"),
              "t.scn:3: the virtual clock may not pass 1000000000 seconds");
    EXPECT_EQ(parseError("wait 9223372036854.5"),
              "t.scn:1: the virtual clock may not pass 1000000000 seconds");
}

TEST(ScenarioInput, AnExceptionWhilePlayingIsAFaultAtItsLine) {
    std::vector<Statement> statements(2);
    statements[0].line = 3;
    statements[0].run = [](Runtime&) {};
    statements[1].line = 7;
    statements[1].run = [](Runtime&) { throw std::out_of_range("no row 9"); };
    Runtime rt;
    auto outcome = play("t.scn", statements, rt);
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.error, "t.scn:7: the program under test threw an exception: no row 9");
}

TEST(ScenarioInput, DumpedStringsFromTheWorldStayOnTheirLine) {
    const std::string digest(64, 'a');
    const std::string text =
        "defaults setup.askedLogin true\n"
        "screen 1 \"Built-in\" 0,0,1512,982 builtin\n"
        "defaults \"a key\\n0.000 status forged\" 1\n"
        "defaults layouts.v2 data:\"{\\\"K\\\":[" +
        std::string("{\\\"bundle\\\":\\\"b\\\",\\\"title\\\":\\\"x\\\\n0.000 status forged\\\",") +
        "\\\"x\\\":0,\\\"y\\\":0,\\\"w\\\":1,\\\"h\\\":1}," +
        "{\\\"bundle\\\":\\\"b\\\",\\\"title\\\":\\\"" + digest + "\\\"," +
        "\\\"x\\\":0,\\\"y\\\":0,\\\"w\\\":1,\\\"h\\\":1}]}\"\n"
        "launch\n"
        "dump layouts\n"
        "dump defaults\n";
    Runtime rt;
    auto outcome = play("t.scn", parseScenario("t.scn", text), rt);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.error;
    const auto& out = rt.transcript.text();
    EXPECT_EQ(out.find("\n0.000 status forged"), std::string::npos) << out;
    EXPECT_NE(out.find("0.000 layout \"K\" \"b\" \"x\\n0.000 status forged\" 0,0,1,1\n"),
              std::string::npos)
        << out;
    EXPECT_NE(out.find("0.000 layout \"K\" \"b\" " + digest + " 0,0,1,1\n"), std::string::npos)
        << out;
    EXPECT_NE(out.find("0.000 stored \"a key\\n0.000 status forged\" 1\n"), std::string::npos)
        << out;
}

TEST(ScenarioInput, TextsFromOtherProgramsCannotForgeATranscriptLine) {
    SimDispatch dispatch;
    Transcript t(dispatch);
    t.line("status", "Moving 1 of 2: Mail\n0.000 status forged\r\x01\x7f\u2026");
    t.line("log", "plain text stays as it is: \\n \"quoted\"");
    EXPECT_EQ(t.text(), "0.000 status Moving 1 of 2: Mail\\n0.000 status forged\\r\\u0001"
                        "\\u007f\u2026\n"
                        "0.000 log plain text stays as it is: \\n \"quoted\"\n");
}
