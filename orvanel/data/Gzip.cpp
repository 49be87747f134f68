// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/Gzip.h"

#include <zlib.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

namespace orvanel {
namespace {

constexpr std::string_view magic = "\x1F\x8B";
constexpr std::size_t chunkBytes = 262144;  ///< that are unpacked at once

using Inflation = std::unique_ptr<z_stream, decltype(&inflateEnd)>;

/// Unpacks one member and leaves the stream behind it.
/// @return whether it stayed within the limit
bool UnpackMember(z_stream& stream, std::size_t sizeLimit, std::vector<Bytef>& chunk, std::string& text) {
    for (int state = Z_OK; state != Z_STREAM_END;) {
        stream.next_out = chunk.data();
        stream.avail_out = static_cast<uInt>(chunk.size());
        state = inflate(&stream, Z_NO_FLUSH);
        const std::size_t size = chunk.size() - stream.avail_out;
        if (size > sizeLimit - text.size()) return false;
        text.append(reinterpret_cast<const char*>(chunk.data()), size);
        if (state == Z_BUF_ERROR) throw std::runtime_error("it is cut off, the end of its gzip compression is missing");
        if (state != Z_OK && state != Z_STREAM_END)
            throw std::runtime_error("its gzip compression is damaged behind " + std::to_string(text.size()) +
                                     " unpacked bytes");
    }
    return true;
}

}  // namespace

bool IsGzip(std::string_view bytes) {
    return bytes.starts_with(magic);
}

std::optional<std::string> Gunzip(std::string_view packed, std::size_t sizeLimit) {
    constexpr int gzipOnly = 16 + MAX_WBITS;
    if (packed.size() > std::numeric_limits<uInt>::max()) return std::nullopt;
    z_stream stream{};
    if (inflateInit2(&stream, gzipOnly) != Z_OK) throw std::runtime_error("its gzip compression cannot be unpacked");
    const Inflation inflation(&stream, &inflateEnd);
    // zlib only reads what it is given, but its interface is older than const.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    std::vector<Bytef> chunk(chunkBytes);
    std::string text;
    for (std::string_view rest = packed; rest.find_first_not_of('\0') != std::string_view::npos;
         rest = packed.substr(packed.size() - stream.avail_in)) {
        inflateReset(&stream);
        if (!UnpackMember(stream, sizeLimit, chunk, text)) return std::nullopt;
    }
    return text;
}

}  // namespace orvanel
