#include "support/png_reader.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

namespace vok_test {
namespace {

// ---- Inflate (RFC 1951), the canonical-Huffman decoder ---------------------

struct Bits {
    const std::vector<uint8_t> &data;
    size_t pos;
    uint32_t buffer = 0;
    int count = 0;
    bool failed = false;

    uint32_t take(int need) {
        uint32_t value = buffer;
        while (count < need) {
            if (pos >= data.size()) {
                failed = true;
                return 0;
            }
            value |= static_cast<uint32_t>(data[pos++]) << count;
            count += 8;
        }
        buffer = need < 32 ? value >> need : 0;
        count -= need;
        return value & ((1u << need) - 1);
    }
};

struct Huffman {
    uint16_t count[16];
    uint16_t symbol[320];
};

void build(Huffman &h, const uint16_t *lengths, int n) {
    uint16_t offsets[16] = {};
    for (int i = 0; i < 16; ++i) h.count[i] = 0;
    for (int i = 0; i < n; ++i) h.count[lengths[i]]++;
    h.count[0] = 0;
    for (int len = 1; len < 15; ++len) offsets[len + 1] = offsets[len] + h.count[len];
    for (int i = 0; i < n; ++i)
        if (lengths[i] != 0) h.symbol[offsets[lengths[i]]++] = static_cast<uint16_t>(i);
}

int decode(Bits &in, const Huffman &h) {
    int code = 0, first = 0, index = 0;
    for (int len = 1; len < 16; ++len) {
        code |= static_cast<int>(in.take(1));
        const int count = h.count[len];
        if (code - count < first) return h.symbol[index + (code - first)];
        index += count;
        first = (first + count) << 1;
        code <<= 1;
        if (in.failed) break;
    }
    return -1;
}

const uint16_t kLengthBase[] = {3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 15, 17, 19, 23, 27,
                                31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
const uint16_t kLengthExtra[] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
const uint16_t kDistBase[] = {1, 2, 3, 4, 5, 7, 9, 13, 17, 25, 33, 49, 65, 97, 129,
                              193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145,
                              8193, 12289, 16385, 24577};
const uint16_t kDistExtra[] = {0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6,
                               6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

bool codes(Bits &in, std::vector<uint8_t> &out, const Huffman &lit, const Huffman &dist) {
    for (;;) {
        int symbol = decode(in, lit);
        if (symbol < 0 || in.failed) return false;
        if (symbol < 256) {
            out.push_back(static_cast<uint8_t>(symbol));
        } else if (symbol == 256) {
            return true;
        } else {
            symbol -= 257;
            if (symbol >= 29) return false;
            const size_t length = kLengthBase[symbol] + in.take(kLengthExtra[symbol]);
            const int d = decode(in, dist);
            if (d < 0 || d >= 30) return false;
            const size_t distance = kDistBase[d] + in.take(kDistExtra[d]);
            if (in.failed || distance > out.size()) return false;
            for (size_t i = 0; i < length; ++i) out.push_back(out[out.size() - distance]);
        }
    }
}

bool inflate(const std::vector<uint8_t> &data, size_t start, std::vector<uint8_t> &out) {
    Bits in{data, start};
    int last;
    do {
        last = static_cast<int>(in.take(1));
        const uint32_t type = in.take(2);
        if (type == 0) {
            in.buffer = 0;
            in.count = 0;
            if (in.pos + 4 > data.size()) return false;
            const size_t len = data[in.pos] | (data[in.pos + 1] << 8);
            in.pos += 4;
            if (in.pos + len > data.size()) return false;
            out.insert(out.end(), data.begin() + in.pos, data.begin() + in.pos + len);
            in.pos += len;
            continue;
        }
        uint16_t lengths[320] = {};
        Huffman lit, dist;
        if (type == 1) {
            for (int i = 0; i < 288; ++i) lengths[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
            build(lit, lengths, 288);
            for (int i = 0; i < 30; ++i) lengths[i] = 5;
            build(dist, lengths, 30);
        } else if (type == 2) {
            static const uint8_t kOrder[19] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5,
                                               11, 4, 12, 3, 13, 2, 14, 1, 15};
            const int nlen = static_cast<int>(in.take(5)) + 257;
            const int ndist = static_cast<int>(in.take(5)) + 1;
            const int ncode = static_cast<int>(in.take(4)) + 4;
            for (int i = 0; i < ncode; ++i) lengths[kOrder[i]] = static_cast<uint16_t>(in.take(3));
            Huffman lencode;
            build(lencode, lengths, 19);
            int index = 0;
            while (index < nlen + ndist) {
                const int symbol = decode(in, lencode);
                if (symbol < 0) return false;
                if (symbol < 16) {
                    lengths[index++] = static_cast<uint16_t>(symbol);
                    continue;
                }
                uint16_t repeat = 0;
                int times;
                if (symbol == 16) {
                    if (index == 0) return false;
                    repeat = lengths[index - 1];
                    times = 3 + static_cast<int>(in.take(2));
                } else if (symbol == 17) {
                    times = 3 + static_cast<int>(in.take(3));
                } else {
                    times = 11 + static_cast<int>(in.take(7));
                }
                if (index + times > nlen + ndist) return false;
                while (times--) lengths[index++] = repeat;
            }
            build(lit, lengths, nlen);
            build(dist, lengths + nlen, ndist);
        } else {
            return false;
        }
        if (!codes(in, out, lit, dist)) return false;
    } while (!last && !in.failed);
    return !in.failed;
}

// ---- PNG container and scanline filters ----------------------------------------

uint32_t be32(const uint8_t *p) {
    return (uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | p[3];
}

int paeth(int a, int b, int c) {
    const int p = a + b - c, pa = abs(p - a), pb = abs(p - b), pc = abs(p - c);
    return pa <= pb && pa <= pc ? a : (pb <= pc ? b : c);
}

}  // namespace

std::unique_ptr<TestBitmap> read_png(const std::string &path, std::string *error) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(file)),
                                     std::istreambuf_iterator<char>());
    static const uint8_t kSignature[8] = {137, 80, 78, 71, 13, 10, 26, 10};
    if (bytes.size() < 8 || !std::equal(kSignature, kSignature + 8, bytes.begin())) {
        *error = "not a PNG file: " + path;
        return nullptr;
    }
    uint32_t width = 0, height = 0, channels = 0;
    std::vector<uint8_t> compressed;
    for (size_t pos = 8; pos + 12 <= bytes.size();) {
        const uint32_t length = be32(&bytes[pos]);
        const std::string type(bytes.begin() + pos + 4, bytes.begin() + pos + 8);
        const uint8_t *body = &bytes[pos + 8];
        if (pos + 12 + length > bytes.size()) break;
        if (type == "IHDR") {
            width = be32(body);
            height = be32(body + 4);
            channels = body[9] == 2 ? 3 : body[9] == 6 ? 4 : 0;
            if (body[8] != 8 || body[12] != 0) channels = 0;
        } else if (type == "IDAT") {
            compressed.insert(compressed.end(), body, body + length);
        }
        pos += 12 + length;
    }
    std::vector<uint8_t> raw;
    if (channels == 0 || width == 0 || height == 0 || !inflate(compressed, 2, raw) ||
        raw.size() < static_cast<size_t>(height) * (width * channels + 1)) {
        *error = "unsupported or damaged PNG (8-bit RGB/RGBA only): " + path;
        return nullptr;
    }
    const size_t stride = static_cast<size_t>(width) * channels;
    std::vector<uint8_t> previous(stride, 0), line(stride);
    auto bitmap = std::make_unique<TestBitmap>(width, height);
    for (uint32_t y = 0; y < height; ++y) {
        const uint8_t *in = &raw[y * (stride + 1)];
        const uint8_t filter = in[0];
        for (size_t i = 0; i < stride; ++i) {
            const int a = i >= channels ? line[i - channels] : 0;
            const int b = previous[i];
            const int c = i >= channels ? previous[i - channels] : 0;
            int predictor = 0;
            switch (filter) {
                case 1: predictor = a; break;
                case 2: predictor = b; break;
                case 3: predictor = (a + b) / 2; break;
                case 4: predictor = paeth(a, b, c); break;
                default: break;
            }
            line[i] = static_cast<uint8_t>(in[1 + i] + predictor);
        }
        for (uint32_t x = 0; x < width; ++x) {
            const uint8_t *p = &line[x * channels];
            bitmap->at(x, y) = rgba(p[0], p[1], p[2], channels == 4 ? p[3] : 255);
        }
        previous.swap(line);
    }
    return bitmap;
}

}  // namespace vok_test
