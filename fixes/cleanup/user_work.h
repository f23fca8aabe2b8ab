// What people made, told by a file's name and by how it begins.
#pragma once

#include <cstddef>
#include <string_view>

/// True for a document's name, a template's, or one of the copies that CorelDRAW and this tool keep
/// of documents.
bool IsDrawingName(std::wstring_view fileName);

/// True for a file that people made, by its name: drawings, workspaces, macros, palettes, styles,
/// fonts. Such a file stays wherever it lies.
bool IsUserWork(std::wstring_view fileName);

/// Bytes that `BeginsLikeDrawing` needs to see; no document is shorter.
inline constexpr std::size_t kBeginningBytes = 12;

/// True for a RIFF form or a ZIP container: all of CorelDRAW's documents are one of them, under
/// whatever name a crash left them.
bool BeginsLikeDrawing(std::string_view bytes);
