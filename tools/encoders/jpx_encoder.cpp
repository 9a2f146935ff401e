// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/encoders/jpx_encoder.h"

#include <algorithm>
#include <cstring>
#include <openjpeg.h>

namespace encoders::jpx {

std::string big_endian(std::uint32_t v, int n) {
  std::string bytes;
  while (n-- > 0) bytes += static_cast<char>(v >> (8 * n));
  return bytes;
}

std::string box(const char* name, const std::string& body) {
  return big_endian(static_cast<std::uint32_t>(body.size() + 8), 4) + name + body;
}

/// The codestream in a file with these boxes in its header.
std::string file_of(const std::string& codestream, const std::string& boxes) {
  return box("jP  ", "\r\n\x87\n") + box("ftyp", std::string("jp2 \0\0\0\0jp2 ", 12)) +
         box("jp2h", boxes) + box("jp2c", codestream);
}

std::string color_box(std::uint32_t space) {
  return box("colr", std::string("\1\0\0", 3) + big_endian(space, 4));
}

}  // namespace encoders::jpx

namespace encoders {

std::string encode_jpx(const jpx::Picture& picture, const std::function<int(int, int, int)>& get) {
  std::vector<opj_image_cmptparm_t> parms;
  for (const jpx::Component& c : picture.components) {
    opj_image_cmptparm_t parm = {};
    parm.dx = parm.dy = static_cast<OPJ_UINT32>(c.step);
    parm.w = static_cast<OPJ_UINT32>((picture.width + c.step - 1) / c.step);
    parm.h = static_cast<OPJ_UINT32>((picture.height + c.step - 1) / c.step);
    parm.prec = static_cast<OPJ_UINT32>(c.bits);
    parm.sgnd = c.is_signed;
    parms.push_back(parm);
  }
  opj_image_t* image =
      opj_image_create(static_cast<OPJ_UINT32>(parms.size()), parms.data(), OPJ_CLRSPC_UNSPECIFIED);
  image->x1 = static_cast<OPJ_UINT32>(picture.width);
  image->y1 = static_cast<OPJ_UINT32>(picture.height);
  for (std::size_t c = 0; c < parms.size(); ++c) {
    const jpx::Component& component = picture.components[c];
    OPJ_INT32* sample = image->comps[c].data;
    for (OPJ_UINT32 y = 0; y < parms[c].h; ++y) {
      for (OPJ_UINT32 x = 0; x < parms[c].w; ++x) {
        *sample++ = get(static_cast<int>(c), static_cast<int>(x) * component.step,
                        static_cast<int>(y) * component.step) -
                    (component.is_signed ? 1 << (component.bits - 1) : 0);
      }
    }
  }
  opj_cparameters_t options;
  opj_set_default_encoder_parameters(&options);
  options.tcp_numlayers = 1;
  options.tcp_rates[0] = 0;
  options.cp_disto_alloc = 1;
  options.numresolution = 3;
  options.tcp_mct = 0;
  if (picture.tile > 0) {
    options.tile_size_on = OPJ_TRUE;
    options.cp_tdx = options.cp_tdy = picture.tile;
  }
  struct Out {
    std::string bytes;
    std::size_t at = 0;
  } out;
  opj_stream_t* stream = opj_stream_create(1 << 16, OPJ_FALSE);
  opj_stream_set_user_data(stream, &out, nullptr);
  opj_stream_set_write_function(stream, [](void* src, OPJ_SIZE_T n, void* user) {
    Out& to = *static_cast<Out*>(user);
    to.bytes.resize(std::max(to.bytes.size(), to.at + n));
    std::memcpy(to.bytes.data() + to.at, src, n);
    to.at += n;
    return n;
  });
  opj_stream_set_skip_function(stream, [](OPJ_OFF_T n, void* user) {
    static_cast<Out*>(user)->at += static_cast<std::size_t>(n);
    return n;
  });
  opj_stream_set_seek_function(stream, [](OPJ_OFF_T at, void* user) -> OPJ_BOOL {
    static_cast<Out*>(user)->at = static_cast<std::size_t>(at);
    return OPJ_TRUE;
  });
  opj_codec_t* codec = opj_create_compress(OPJ_CODEC_J2K);
  const bool good = opj_setup_encoder(codec, &options, image) &&
                    opj_start_compress(codec, image, stream) && opj_encode(codec, stream) &&
                    opj_end_compress(codec, stream);
  opj_destroy_codec(codec);
  opj_stream_destroy(stream);
  opj_image_destroy(image);
  return good ? out.bytes : "";
}

}  // namespace encoders
