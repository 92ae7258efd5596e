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
    };
    for (const auto& [args, mentions] : cases) {
        RenderOptions o;
        std::string error;
        EXPECT_FALSE(parseRenderOptions(args, o, error)) << args[0];
        EXPECT_NE(error.find(mentions), std::string::npos) << error;
    }
}

}  // namespace
}  // namespace tolvane
