#include "tools/render/RenderOptions.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(RenderOptions, BadArgumentsAreNamed) {
    const std::vector<std::pair<std::vector<std::string>, const char*>> cases{
        {{"--volume", "3"}, "--volume"},       {{"--rate"}, "needs a value"},
        {{"--rate", "44.1k"}, "44.1k"},        {{"--block", "0"}, "--block"},
        {{"--param", "3"}, "INDEX=VALUE"},     {{"--param", "3=1.5"}, "INDEX=VALUE"},
        {{"--tempo", "0"}, "--tempo"},         {{"--format", "8"}, "16, 24 or float"},
        {{"--no-tempo=1"}, "takes no value"},  {{"--program", "-2"}, "--program"},
        {{"--page", "3"}, "1 or 2"},           {{"--screenshot", "a.png", "--plugin", "b.so"}, "--plugin"},
    };
    for (const auto& [args, mentions] : cases) {
        RenderOptions o;
        std::string error;
        EXPECT_FALSE(parseRenderOptions(args, o, error)) << args[0];
        EXPECT_NE(error.find(mentions), std::string::npos) << error;
    }
}

TEST(RenderOptions, AScreenshotTakesAPageAndTheUsualProgramAndParameterOptions) {
    RenderOptions o;
    std::string error;
    ASSERT_TRUE(parseRenderOptions({"--screenshot", "out.png", "--page=2", "--program", "5", "--param", "2=0.25"}, o,
                                   error))
        << error;
    EXPECT_EQ(o.screenshotPath, "out.png");
    EXPECT_EQ(o.page, 2);
    EXPECT_EQ(o.program, 5);
    ASSERT_EQ(o.parameters.size(), 1u);
    EXPECT_EQ(o.parameters[0].first, 2);
    ASSERT_TRUE(parseRenderOptions({"--screenshot", "out.png"}, o, error));
    EXPECT_EQ(o.page, 1);
}

}  // namespace
}  // namespace tolvane
