// The vok tool run as a user runs it: exit statuses, messages, files left.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "support/bitmaps.h"
#include "cli_files.h"
#include "image_io.h"
#include "vok/generators.h"
#include "vok/tonal.h"

namespace {

using vok_test::ScratchDir;

struct Outcome {
    int status;
    std::string output;  // standard output and standard error together
};

Outcome vok(const std::string &arguments) {
    const std::string command = std::string("'") + VOK_CLI_PATH + "' " + arguments + " 2>&1";
    Outcome outcome{-1, ""};
    FILE *pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return outcome;
    char chunk[4096];
    size_t got;
    while ((got = fread(chunk, 1, sizeof chunk, pipe)) > 0) outcome.output.append(chunk, got);
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

std::string data(const std::string &name) { return std::string(getenv("VOK_TEST_DATA")) + "/" + name; }

bool contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

const char kUnknownLast[] =
    R"({"identifier": "x", "processors": [{"name": "original", "parameters": {}},)"
    R"( {"name": "sparkle", "parameters": {}}]})";

TEST(VokCli, ApplyOriginalReproducesThePixels) {
    ScratchDir dir;
    vok_test::TestBitmap photo(23, 11);
    photo.randomize(5);
    std::string error;
    ASSERT_TRUE(vok_cli::write_image(dir.path("in.png"), *photo.get(), error));

    for (const char *options : {"", "--strength 0.25 --seed -7", "--seed=3"}) {
        const Outcome run = vok(std::string("apply ") + options + " " + data("original.json") +
                                " " + dir.path("in.png") + " " + dir.path("out.png"));
        EXPECT_EQ(run.status, 0) << options << ": " << run.output;
        vok_cli::Image out;
        ASSERT_TRUE(vok_cli::read_image(dir.path("out.png"), out, error)) << error;
        EXPECT_EQ(std::vector<uint8_t>(out.bitmap.pixels, out.bitmap.pixels + 23 * 11 * 4),
                  photo.bytes())
            << options;
    }
}

TEST(VokCli, MixBlendsTheFullEffectOverThePhoto) {
    ScratchDir dir;
    // Opaque: the mix composites by the processed copy's alpha as well.
    vok_test::TestBitmap photo(9, 5);
    photo.randomize(11);
    for (uint32_t y = 0; y < 5; ++y)
        for (uint32_t x = 0; x < 9; ++x) photo.at(x, y).alpha = 255;
    std::string error;
    ASSERT_TRUE(vok_cli::write_image(dir.path("in.png"), *photo.get(), error));
    vok_test::write_file(dir.path("gamma.json"),
                         R"({"identifier": "g", "processors": [)"
                         R"({"name": "gamma", "parameters": {"value": 2.2}}]})");
    auto apply = [&](const std::string &options, const std::string &out) {
        const Outcome run = vok("apply " + options + " " + dir.path("gamma.json") + " " +
                                dir.path("in.png") + " " + dir.path(out));
        EXPECT_EQ(run.status, 0) << options << ": " << run.output;
        vok_cli::Image image;
        EXPECT_TRUE(vok_cli::read_image(dir.path(out), image, error)) << error;
        return image.bitmap.pixels ? std::vector<uint8_t>(image.bitmap.pixels,
                                                          image.bitmap.pixels + 9 * 5 * 4)
                                   : std::vector<uint8_t>();
    };
    const auto full = apply("", "full.png");
    EXPECT_NE(full, photo.bytes());
    EXPECT_EQ(apply("--mix 0", "none.png"), photo.bytes());
    const auto mixed = apply("--mix=1", "mixed.png");
    ASSERT_EQ(mixed.size(), full.size());
    for (size_t i = 0; i < full.size(); ++i) EXPECT_NEAR(mixed[i], full[i], 1) << i;
    // The seed reaches the effect: noise repeats for a seed and moves with it,
    // exactly as the library draws it for that seed.
    vok_test::write_file(dir.path("noise.json"),
                         R"({"identifier": "n", "processors": [)"
                         R"({"name": "noise", "parameters": {"intensity": 30}}]})");
    std::vector<uint8_t> runs[3];
    const char *seeds[3] = {"--seed 5", "--seed 5", "--seed 6"};
    for (int i = 0; i < 3; ++i) {
        const std::string out = "noise" + std::to_string(i) + ".png";
        EXPECT_EQ(vok("apply " + std::string(seeds[i]) + " " + dir.path("noise.json") + " " +
                      dir.path("in.png") + " " + dir.path(out)).status, 0);
        vok_cli::Image image;
        ASSERT_TRUE(vok_cli::read_image(dir.path(out), image, error)) << error;
        runs[i].assign(image.bitmap.pixels, image.bitmap.pixels + 9 * 5 * 4);
    }
    vok_test::TestBitmap seeded(photo);
    VokBitmapAddNoise(seeded.get(), 30.0f, 5u);
    EXPECT_EQ(runs[0], seeded.bytes());
    EXPECT_EQ(runs[1], runs[0]);
    EXPECT_NE(runs[2], runs[0]);
    EXPECT_EQ(vok("apply --mix 0.5 --strength 0.5 " + dir.path("gamma.json") + " " +
                  dir.path("in.png") + " " + dir.path("x.png"))
                  .status,
              2);
}

TEST(VokCli, ApplyFailuresSetTheStatusAndWriteNothing) {
    ScratchDir dir;
    vok_test::TestBitmap photo(4, 4);
    std::string error;
    ASSERT_TRUE(vok_cli::write_image(dir.path("in.png"), *photo.get(), error));
    vok_test::write_file(dir.path("unknown.json"), kUnknownLast);
    const std::string out = dir.path("out.jpg");

    Outcome run = vok("apply " + data("original.json") + " " + dir.path("none.png") + " " + out);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "vok: cannot read '" + dir.path("none.png") +
                              "': No such file or directory\n");

    run = vok("apply " + dir.path("unknown.json") + " " + dir.path("in.png") + " " + out);
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.output, "No processor found with name: sparkle")) << run.output;

    run = vok("apply " + dir.path("missing.json") + " " + dir.path("in.png") + " " + out);
    EXPECT_EQ(run.status, 2);
    run = vok("apply " + data("original.json") + " " + dir.path("in.png") + " " +
              dir.path("out.gif"));
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(contains(run.output, "unknown image type")) << run.output;
    run = vok("apply --strength much " + data("original.json") + " " + dir.path("in.png") +
              " " + out);
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(contains(run.output, "invalid number for --strength: 'much'")) << run.output;
    EXPECT_EQ(vok("apply " + data("original.json")).status, 2);
    EXPECT_EQ(vok("frobnicate").status, 2);

    EXPECT_EQ(dir.entries(), (std::vector<std::string>{"in.png", "unknown.json"}));
}

TEST(VokCli, ValidateJudgesEveryStep) {
    ScratchDir dir;
    vok_test::write_file(dir.path("unknown.json"), kUnknownLast);
    // The failing step comes first; a whole run would report success.
    vok_test::write_file(dir.path("first.json"),
                         R"({"identifier": "x", "processors": [{"name": "Original", "parameters": {}},)"
                         R"( {"name": "original", "parameters": {}}]})");
    vok_test::write_file(dir.path("broken.json"), "{\"identifier\": ");

    Outcome run = vok("validate " + data("original.json"));
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_TRUE(contains(run.output, "step 1 \"original\": ok")) << run.output;

    run = vok("validate " + dir.path("first.json"));
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.output, "No processor found with name: Original")) << run.output;
    EXPECT_TRUE(contains(run.output, "step 1 \"Original\": FAILED")) << run.output;
    EXPECT_TRUE(contains(run.output, "step 2 \"original\": ok")) << run.output;

    run = vok("validate " + data("original.json") + " " + dir.path("broken.json") + " " +
              dir.path("unknown.json"));
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.output, "Invalid JSON string.")) << run.output;
    EXPECT_TRUE(contains(run.output, dir.path("broken.json") + ": FAILED")) << run.output;
    EXPECT_TRUE(contains(run.output, dir.path("unknown.json") + ": FAILED")) << run.output;

    EXPECT_EQ(vok("validate").status, 2);
}

TEST(VokCli, InfoAndHelp) {
    Outcome run = vok("info");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "vok-lite library 2.1.1\neffect format 2.0.0\n");
    for (const char *command : {"apply", "validate", "info"}) {
        run = vok(std::string(command) + " --help");
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.output.rfind(std::string("Usage: vok ") + command, 0), 0u) << run.output;
    }
    run = vok("info --presets");  // 38 names, the 24 borders marked
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 38);
    EXPECT_TRUE(contains(run.output, "instantPrint (border)\n")) << run.output;
    EXPECT_TRUE(contains(run.output, "\nfilmGrain\n")) << run.output;
    run = vok("tool --help");  // every tool type with what it does
    EXPECT_TRUE(contains(run.output, "  35  restore      bring back the unedited photo")) << run.output;
    EXPECT_TRUE(contains(run.output, "  20  airbrush")) << run.output;
    run = vok("--help");
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(contains(run.output, "validate")) << run.output;
    EXPECT_EQ(vok("").status, 2);
}

TEST(VokCli, EnhanceCorrectsAPhotoAndKeepsItsExitCodes) {
    ScratchDir dir;
    vok_test::TestBitmap photo(30, 20);
    photo.randomize(3);
    for (uint8_t *p = photo.get()->pixels, *end = p + 30 * 20 * 4; p != end; p += 4) {
        p[0] = static_cast<uint8_t>(30 + p[0] / 5), p[1] = static_cast<uint8_t>(30 + p[1] / 5);
        p[2] = static_cast<uint8_t>(40 + p[2] / 5), p[3] = 255;  // dark, flat, bluish
    }
    std::string error;
    ASSERT_TRUE(vok_cli::write_image(dir.path("in.png"), *photo.get(), error));
    auto output = [&](const std::string &name) {
        vok_cli::Image image;
        EXPECT_TRUE(vok_cli::read_image(dir.path(name), image, error)) << error;
        return image.bitmap.pixels
                   ? std::vector<uint8_t>(image.bitmap.pixels, image.bitmap.pixels + 30 * 20 * 4)
                   : std::vector<uint8_t>();
    };
    EXPECT_EQ(vok("enhance " + dir.path("in.png") + " " + dir.path("full.png")).status, 0);
    vok_test::TestBitmap expected(photo);
    VokLabCorrect(expected.get(), 1.0f);
    VokVaryingContrast(expected.get(), 1.0f);
    EXPECT_EQ(output("full.png"), expected.bytes());
    EXPECT_EQ(vok("enhance --strength 0 " + dir.path("in.png") + " " + dir.path("none.png")).status,
              0);
    EXPECT_EQ(output("none.png"), photo.bytes());
    EXPECT_EQ(vok("enhance " + dir.path("in.png")).status, 2);
    EXPECT_EQ(vok("enhance --strength x " + dir.path("in.png") + " " + dir.path("x.png")).status, 2);
    EXPECT_EQ(vok("enhance " + dir.path("missing.png") + " " + dir.path("x.png")).status, 2);
    EXPECT_FALSE(vok_test::file_exists(dir.path("x.png")));
}

}  // namespace

TEST(VokCli, GalleryDrawsEveryLookAndReportsFailures) {
    ScratchDir dir;
    // 620 x 24 shrinks by 3 (the smallest factor within 300 px) to 206 x 8.
    vok_test::TestBitmap photo(620, 24);
    photo.randomize(9);
    std::string error;
    ASSERT_TRUE(vok_cli::write_image(dir.path("in.png"), *photo.get(), error));
    const std::string fx = dir.path("fx");
    ASSERT_EQ(0, system(("mkdir '" + fx + "'").c_str()));
    vok_test::write_file(fx + "/plain.json", vok_test::read_file(data("original.json")));
    vok_test::write_file(fx + "/broken.json", kUnknownLast);
    vok_test::write_file(fx + "/notes.txt", "not a look");

    const Outcome run =
        vok("gallery --input " + dir.path("in.png") + " --out " + dir.path("out") + " --effects " + fx);
    EXPECT_EQ(1, run.status) << run.output;
    EXPECT_TRUE(contains(run.output, "No processor found with name: sparkle")) << run.output;
    EXPECT_TRUE(contains(run.output, "look 'broken' failed")) << run.output;
    EXPECT_TRUE(vok_test::file_exists(dir.path("out/original.jpg")));
    EXPECT_TRUE(vok_test::file_exists(dir.path("out/plain.jpg")));
    EXPECT_FALSE(vok_test::file_exists(dir.path("out/broken.jpg")));
    const std::string index = vok_test::read_file(dir.path("out/index.html"));
    EXPECT_TRUE(contains(index, "<img src=\"plain.jpg\"")) << index;
    EXPECT_TRUE(contains(index, "broken: failed")) << index;
    // The engine sheets, on the gallery's photo when their own is not beside the looks.
    for (const char *sheet : {"mosaics.png", "tools.png"}) {
        EXPECT_TRUE(contains(index, std::string("href=\"") + sheet)) << sheet;
        vok_cli::Image image;
        EXPECT_TRUE(vok_cli::read_image(dir.path(std::string("out/") + sheet), image, error)) << sheet;
    }

    // Three tiles in a row (original, broken, plain by name), each 206 x 8
    // with a 20 px margin, under a 64 px title band, each with a 30 px caption.
    vok_cli::Image sheet;
    ASSERT_TRUE(vok_cli::read_image(dir.path("out/gallery.png"), sheet, error)) << error;
    EXPECT_EQ(20u + 3 * (206 + 20), sheet.bitmap.width);
    EXPECT_EQ(64u + 8 + 30 + 20, sheet.bitmap.height);
    auto at = [&](uint32_t x, uint32_t y) {
        return reinterpret_cast<const VokColor *>(sheet.bitmap.pixels)[y * sheet.bitmap.width + x];
    };
    // The "plain" thumbnail: each pixel the rounded mean of a 3 x 3 block.
    for (uint32_t x : {0u, 1u, 205u}) {
        uint32_t sum = 0;
        for (uint32_t j = 0; j < 9; ++j) sum += photo.at(3 * x + j % 3, 3 * 7 + j / 3).green;
        EXPECT_EQ((sum + 4) / 9, at(20 + 2 * 226 + x, 64 + 7).green) << x;
    }
    // The broken look's tile is an empty grey box.
    EXPECT_EQ(at(20 + 226, 64).red, at(20 + 226 + 205, 64 + 7).red);
}

TEST(VokCli, ToolReplaysStrokesOntoThePhoto) {
    ScratchDir dir;
    vok_test::TestBitmap photo(30, 20);
    photo.fill(vok_test::rgba(255, 255, 255));
    std::string error;
    ASSERT_TRUE(vok_cli::write_image(dir.path("in.png"), *photo.get(), error));
    // The draw tool paints in the stroke's default red; the path stops at the
    // midpoint (21, 10) of the last two points, so x = 28 stays unpainted.
    vok_test::write_file(dir.path("strokes.json"),
                         R"([{"points": [[4, 10], [14, 10], [28, 10]], "mode": 0}])");
    const Outcome run = vok("tool --type 12 --radius 2 --strokes " + dir.path("strokes.json") +
                            " " + dir.path("in.png") + " " + dir.path("out.png"));
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_TRUE(contains(run.output, "3 touches on a 30x20 preview: median")) << run.output;
    vok_cli::Image out;
    ASSERT_TRUE(vok_cli::read_image(dir.path("out.png"), out, error)) << error;
    auto pixel = [&](uint32_t x, uint32_t y) {
        const uint8_t *p = out.bitmap.pixels + (y * 30 + x) * 4;
        return std::vector<int>{p[0], p[1], p[2]};
    };
    EXPECT_EQ(pixel(4, 10), (std::vector<int>{255, 0, 0}));
    EXPECT_EQ(pixel(14, 10), (std::vector<int>{255, 0, 0}));
    EXPECT_EQ(pixel(14, 2), (std::vector<int>{255, 255, 255}));
    EXPECT_EQ(pixel(28, 10), (std::vector<int>{255, 255, 255}));

    // Without strokes a sample stroke is painted.
    const Outcome sample = vok("tool --type 2 " + dir.path("in.png") + " " + dir.path("b.png"));
    EXPECT_EQ(sample.status, 0) << sample.output;
    EXPECT_TRUE(contains(sample.output, "49 touches")) << sample.output;
}

TEST(VokCli, ToolRefusesBadArgumentsAndStrokes) {
    ScratchDir dir;
    const std::string files = " " + data("none.png") + " " + dir.path("out.png");
    EXPECT_EQ(vok("tool" + files).status, 2);
    EXPECT_EQ(vok("tool --type 36" + files).status, 2);
    for (const char *strokes : {"{}", "[[]]", "[[[1, 2, 3, 4]]]", R"([{"mode": 2}])", "[[[1,"}) {
        vok_test::write_file(dir.path("s.json"), strokes);
        const Outcome run = vok("tool --type 2 --strokes " + dir.path("s.json") + files);
        EXPECT_EQ(run.status, 2) << strokes;
        EXPECT_TRUE(contains(run.output, "vok: cannot read '" + dir.path("s.json") + "'"))
            << run.output;
    }
}
