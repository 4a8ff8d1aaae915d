#pragma once

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <vector>

/// \file
/// Text in lines and columns. All that is given must be printable already.

namespace tool {

/// How many characters lines have at most where nothing else is said, unless a single word has more.
inline constexpr std::size_t kLineWidth = 100;

/// What stands together: pieces that are kept whole where they fit into a line, and divided where they do
/// not, behind their commas or else at their blanks.
using Cell = std::vector<std::string>;
/// Cells side by side, as many in each row of a table.
using TableRow = std::vector<Cell>;

/// How wide the columns of these rows are, with two blanks between them, in lines that are indented so far.
/// Those that are wider than the line has room for share what others leave.
[[nodiscard]] std::vector<std::size_t> ColumnWidths(const std::vector<TableRow>& rows, std::size_t indent,
                                                    std::size_t lineWidth = kLineWidth);

/// Appends a row. What does not fit into a cell goes on in the next line.
void AppendRow(fmt::memory_buffer& out, const TableRow& row, const std::vector<std::size_t>& widths,
               std::size_t indent);
/// How many lines that takes.
[[nodiscard]] std::size_t LinesOfRow(const TableRow& row, const std::vector<std::size_t>& widths);

/// A text whose words alone are kept whole, so that lines are filled.
[[nodiscard]] Cell EachWord(std::string_view text);

/// Appends the pieces with blanks between them; lines after the first stand `hanging` further to the right.
void AppendParagraph(fmt::memory_buffer& out, const Cell& pieces, std::size_t indent, std::size_t hanging = 2,
                     std::size_t lineWidth = kLineWidth);

}  // namespace tool
