#pragma once

#include <memory>

struct heif_color_profile_nclx;
struct heif_context;
struct heif_decoding_options;
struct heif_image;
struct heif_image_handle;

struct HeifDeleter {
    void operator()(heif_color_profile_nclx *profile) const;
    void operator()(heif_context *context) const;
    void operator()(heif_decoding_options *options) const;
    void operator()(heif_image *image) const;
    void operator()(heif_image_handle *handle) const;
};

/// Owner of one of libheif's objects, for the files of this folder that read its formats.
template <typename Type>
using Heif = std::unique_ptr<Type, HeifDeleter>;
