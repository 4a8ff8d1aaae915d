#include "terminal/Table.h"

#include <algorithm>
#include <numeric>

namespace tool {
namespace {

constexpr std::size_t kGap = 2;  // between columns

// In characters. Those that take two places on a terminal, or none, are rare in what is shown in tables.
std::size_t WidthOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) != 0x80; }));
}

std::size_t WidthOf(const Cell& cell) {
  std::size_t width = cell.empty() ? 0 : cell.size() - 1;
  for (const std::string& piece : cell) width += WidthOf(piece);
  return width;
}

class Lines {
 public:
  // The first line may have another width than the others.
  Lines(std::size_t first, std::size_t width) : room_(first), width_(width) {}

  // A piece that is too long is divided behind its commas, then at its blanks.
  void Add(std::string_view piece, std::string_view divider = ", ") {
    if (WidthOf(piece) <= width_ || divider.empty()) {
      AddWhole(piece);
      return;
    }
    while (!piece.empty()) {
      const std::size_t found = piece.find(divider);
      const std::size_t end = found == std::string_view::npos ? piece.size() : found + divider.size() - 1;
      Add(piece.substr(0, end), divider.substr(1));
      piece.remove_prefix(std::min(end + 1, piece.size()));
    }
  }

  [[nodiscard]] std::vector<std::string> Take() && {
    for (std::string& line : lines_) line.erase(line.find_last_not_of(' ') + 1);
    return std::move(lines_);
  }

 private:
  void AddWhole(std::string_view piece) {
    const std::size_t width = WidthOf(piece);
    const std::size_t blank = lines_.back().empty() ? 0 : 1;
    if (blank + width <= room_ || lines_.back().empty()) {
      lines_.back().append(blank, ' ');
      room_ -= std::min(room_, blank + width);
    } else {
      lines_.emplace_back();
      room_ = width_ - std::min(width_, width);
    }
    lines_.back() += piece;
  }

  std::vector<std::string> lines_{1};
  std::size_t room_;
  std::size_t width_;
};

std::vector<std::string> LinesOf(const Cell& cell, std::size_t first, std::size_t width) {
  Lines lines(first, width);
  for (const std::string& piece : cell) lines.Add(piece);
  return std::move(lines).Take();
}

// Narrow columns get what they need, the others equal parts of the rest.
std::vector<std::size_t> SharedWidths(std::vector<std::size_t> widths, std::size_t room) {
  std::vector<std::size_t> order(widths.size());
  std::iota(order.begin(), order.end(), 0);
  std::ranges::stable_sort(order, {}, [&](std::size_t column) { return widths[column]; });
  room -= std::min(room, kGap * (widths.size() - 1));
  std::size_t left = widths.size();
  for (const std::size_t column : order) {
    widths[column] = std::min(widths[column], room / left--);
    room -= widths[column];
  }
  return widths;
}

void AppendLine(fmt::memory_buffer& out, const std::vector<std::vector<std::string>>& cells, std::size_t line,
                const std::vector<std::size_t>& widths, std::size_t indent) {
  std::size_t blanks = indent;
  for (std::size_t column = 0; column < cells.size(); ++column) {
    const bool isThere = line < cells[column].size() && !cells[column][line].empty();
    const std::string_view text = isThere ? std::string_view(cells[column][line]) : std::string_view();
    const std::size_t width = WidthOf(text);
    if (isThere) {
      fmt::format_to(std::back_inserter(out), "{:{}}{}", "", blanks, text);
      blanks = 0;
    }
    blanks += widths[column] - std::min(widths[column], width) + kGap;
  }
  out.push_back('\n');
}

}  // namespace

std::vector<std::size_t> ColumnWidths(const std::vector<TableRow>& rows, std::size_t indent,
                                      std::size_t lineWidth) {
  if (rows.empty()) return {};
  std::vector<std::size_t> widths(rows.front().size());
  for (const TableRow& row : rows) {
    for (std::size_t column = 0; column < widths.size(); ++column)
      widths[column] = std::max(widths[column], WidthOf(row[column]));
  }
  return SharedWidths(std::move(widths), lineWidth - std::min(lineWidth, indent));
}

void AppendRow(fmt::memory_buffer& out, const TableRow& row, const std::vector<std::size_t>& widths,
               std::size_t indent) {
  std::vector<std::vector<std::string>> cells;
  std::size_t lines = 1;
  for (std::size_t column = 0; column < widths.size(); ++column) {
    cells.push_back(LinesOf(row[column], widths[column], widths[column]));
    lines = std::max(lines, cells.back().size());
  }
  for (std::size_t line = 0; line < lines; ++line) AppendLine(out, cells, line, widths, indent);
}

std::size_t LinesOfRow(const TableRow& row, const std::vector<std::size_t>& widths) {
  std::size_t lines = 1;
  for (std::size_t column = 0; column < widths.size(); ++column)
    lines = std::max(lines, LinesOf(row[column], widths[column], widths[column]).size());
  return lines;
}

Cell EachWord(std::string_view text) {
  Cell words;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end != 0) words.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return words;
}

void AppendParagraph(fmt::memory_buffer& out, const Cell& pieces, std::size_t indent, std::size_t hanging,
                     std::size_t lineWidth) {
  if (pieces.empty()) return;
  const std::size_t width = lineWidth - std::min(lineWidth, indent);
  std::size_t blanks = indent;
  for (const std::string& line : LinesOf(pieces, width, width - std::min(width, hanging))) {
    fmt::format_to(std::back_inserter(out), "{:{}}{}\n", "", blanks, line);
    blanks = indent + hanging;
  }
}

}  // namespace tool
