// vok-lite against OpenCV on 12 megapixels, one thread each. Every pair runs
// in this one process with its repetitions interleaved (ours, theirs, ours,
// ...), so both see the same machine state; the best time of each side is
// kept. Prints one table row per operation with the ratio of speeds (above 1
// means vok-lite is faster).
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "fixture.h"
#include "vok/color.h"
#include "vok/generators.h"
#include "vok/tonal.h"

namespace {

using vok_bench::kHeight;
using vok_bench::kPixels;
using vok_bench::kWidth;

// The box-hybrid filter's spread is s = (W + H) x 2.5e-5 x amount, close to a
// Gaussian's sigma: the amount that gives sigma on the benchmark image.
float amount_for_sigma(double sigma) {
    return static_cast<float>(sigma / ((kWidth + kHeight) * 2.5e-5));
}

// Three box passes of this width have the variance of a Gaussian of sigma.
int box_for_sigma(double sigma) {
    const int width = static_cast<int>(std::lround(std::sqrt(12.0 * sigma * sigma / 3.0 + 1.0)));
    return width | 1;
}

struct Pair {
    std::string operation;
    std::string peer;
    std::function<void()> ours;
    std::function<void()> theirs;
};

double seconds(const std::function<void()> &work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char **argv) {
    const int repetitions = argc > 1 ? std::max(1, atoi(argv[1])) : 5;
    cv::setNumThreads(1);
    vok_bench::Photo photo, layer;
    cv::Mat pristine(kHeight, kWidth, CV_8UC4, vok_bench::pristine().pixels);
    cv::Mat work(kHeight, kWidth, CV_8UC4, photo.bitmap.pixels);
    cv::Mat over(kHeight, kWidth, CV_8UC4, layer.bitmap.pixels);
    cv::flip(pristine, over, 1);  // a second, different image for the blends
    cv::Mat out(kHeight, kWidth, CV_8UC4), rgb, lab, grey_noise(kHeight, kWidth, CV_16SC1),
        colour_noise(kHeight, kWidth, CV_16SC4), noise4;
    cv::cvtColor(pristine, rgb, cv::COLOR_RGBA2RGB);

    VokColorMatrix matrix;
    VokColorMatrixSetIdentity(&matrix);
    VokColorMatrixAdjSaturation(&matrix, 1.4f);
    VokColorMatrixBrightnessContrast(&matrix, 0.1f, 1.2f);
    cv::Mat cv_matrix = cv::Mat::zeros(4, 5, CV_32F);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 4; ++c) cv_matrix.at<float>(r, c == 3 ? 4 : c) = matrix.m[r * 4 + c];
    cv_matrix.at<float>(3, 3) = 1.0f;

    VokHistMap map;
    uint8_t curve[256];
    for (int i = 0; i < 256; ++i)
        curve[i] = static_cast<uint8_t>(std::lround(255.0 * std::pow(i / 255.0, 0.8)));
    VokHistMapSet(&map, curve, curve, curve);
    cv::Mat lut(1, 256, CV_8UC4);
    for (int i = 0; i < 256; ++i) lut.at<cv::Vec4b>(0, i) = {curve[i], curve[i], curve[i], 255};

    const auto reset = [&] { photo.reset(); };
    std::vector<Pair> pairs = {
        {"colour matrix", "cv::transform",
         [&] { VokBitmapColorMatrixTransform(&photo.bitmap, &matrix); },
         [&] { cv::transform(pristine, out, cv_matrix); }},
        {"normal blend 0.5", "cv::addWeighted",
         [&] { VokBitmapBlendBitmap(&photo.bitmap, &layer.bitmap, kVokBlendNormal, 0.5f); },
         [&] { cv::addWeighted(pristine, 0.5, over, 0.5, 0.0, out); }},
        {"multiply blend", "cv::multiply",
         [&] { VokBitmapBlendBitmap(&photo.bitmap, &layer.bitmap, kVokBlendMultiply, 1.0f); },
         [&] { cv::multiply(pristine, over, out, 1.0 / 255); }},
        {"screen blend", "cv::multiply of inverses",
         [&] { VokBitmapBlendBitmap(&photo.bitmap, &layer.bitmap, kVokBlendScreen, 1.0f); },
         [&] {
             cv::Mat a = ~pristine, b = ~over;
             cv::multiply(a, b, out, 1.0 / 255);
             cv::bitwise_not(out, out);
         }},
        {"per-channel table", "cv::LUT", [&] { VokBitmapHistogramTransform(&photo.bitmap, &map); },
         [&] { cv::LUT(pristine, lut, out); }},
        {"blur sigma 25", "3 x cv::blur",
         [&] { VokConvolutionEffectBoxHybridSharpen(&photo.bitmap, -amount_for_sigma(25)); },
         [&] {
             const cv::Size box(box_for_sigma(25), box_for_sigma(25));
             cv::blur(pristine, out, box);
             cv::blur(out, out, box);
             cv::blur(out, out, box);
         }},
        {"blur sigma 10", "3 x cv::blur",
         [&] { VokConvolutionEffectBoxHybridSharpen(&photo.bitmap, -amount_for_sigma(10)); },
         [&] {
             const cv::Size box(box_for_sigma(10), box_for_sigma(10));
             cv::blur(pristine, out, box);
             cv::blur(out, out, box);
             cv::blur(out, out, box);
         }},
        {"blur sigma 3", "cv::GaussianBlur",
         [&] { VokConvolutionEffectBoxHybridSharpen(&photo.bitmap, -amount_for_sigma(3)); },
         [&] { cv::GaussianBlur(pristine, out, cv::Size(0, 0), 3.0); }},
        {"sharpen sigma 3", "GaussianBlur + addWeighted",
         [&] { VokConvolutionEffectBoxHybridSharpen(&photo.bitmap, amount_for_sigma(3)); },
         [&] {
             cv::GaussianBlur(pristine, out, cv::Size(0, 0), 3.0);
             cv::addWeighted(pristine, 1.5, out, -0.5, 0.0, out);
         }},
        {"RGB to LAB", "cv::cvtColor RGB2Lab", [&] { VokBitmapConvertRGBToLAB(&photo.bitmap); },
         [&] { cv::cvtColor(rgb, lab, cv::COLOR_RGB2Lab); }},
        {"noise, grey", "randu + add", [&] { VokBitmapAddNoise(&photo.bitmap, 0.1f, 42u); },
         [&] {
             cv::randu(grey_noise, -25, 26);
             cv::merge(std::vector<cv::Mat>(4, grey_noise), noise4);
             cv::add(pristine, noise4, out, cv::noArray(), CV_8U);
         }},
        {"noise, colour", "randu + add",
         [&] { VokBitmapAddChannelIndependentNoise(&photo.bitmap, 0.1f, 42u); },
         [&] {
             cv::randu(colour_noise, -25, 26);
             cv::add(pristine, colour_noise, out, cv::noArray(), CV_8U);
         }},
    };

    const double megapixels = kPixels / 1e6;
    printf("%-20s %12s  %-28s %12s  %6s\n", "operation", "vok-lite", "peer", "peer", "ratio");
    for (const Pair &pair : pairs) {
        double ours = 1e30, theirs = 1e30;
        for (int r = 0; r < repetitions; ++r) {
            reset();
            ours = std::min(ours, seconds(pair.ours));
            theirs = std::min(theirs, seconds(pair.theirs));
        }
        printf("%-20s %7.0f MP/s  %-28s %7.0f MP/s  %6.2f\n", pair.operation.c_str(),
               megapixels / ours, pair.peer.c_str(), megapixels / theirs, theirs / ours);
    }
    return 0;
}
