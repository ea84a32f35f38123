-- A filter for pandoc that makes a manual page of a document, in the man(7) macros that every formatter knows, without
-- the fonts and the empty paragraphs of pandoc's own writer.
--
-- A heading of the first level is a section, one of the second a subsection; what follows one of the third is indented
-- below it. A row of a table has its first cell as its tag; the others are named by their columns' headings where there
-- is more than one. Metadata: name, summary, version, date. The section named like the page is its description.

local FirstSections = {"SYNOPSIS", "DESCRIPTION"}
local LastSections = {"EXIT STATUS", "ENVIRONMENT", "FILES", "SEE ALSO"}
-- The list of the pages.
local SectionsLeftOut = {"CONTENTS"}
local LongestLine = 79

local function beyond_ascii(text)
  return (text:gsub(utf8.charpattern, function(character)
    local code = utf8.codepoint(character)
    return code > 126 and string.format("\\[u%04X]", code) or nil
  end))
end

-- Typed or printed text: every character is the one of the keyboard.
local AsTyped = {["\\"] = "\\e", ["-"] = "\\-", ["'"] = "\\(aq", ["`"] = "\\(ga", ["^"] = "\\(ha", ["~"] = "\\(ti"}
local function typed(text)
  return beyond_ascii((text:gsub("[\\%-'`^~]", AsTyped)))
end

-- A line that begins like a macro is text all the same.
local function as_text(line)
  return (line:gsub("^[.']", "\\&%0"))
end

local function fill(text)
  local lines, line = {}, ""
  for word in text:gmatch("%S+") do
    if line ~= "" and #line + 1 + #word > LongestLine then
      lines[#lines + 1] = as_text(line)
      line = word
    else
      line = line == "" and word or line .. " " .. word
    end
  end
  lines[#lines + 1] = as_text(line)
  return table.concat(lines, "\n")
end

local inlines

local Inline = {
  Str = function(inline) return beyond_ascii((inline.text:gsub("\\", "\\e"))) end,
  Space = function() return " " end,
  SoftBreak = function() return " " end,
  LineBreak = function() return " " end,
  Code = function(inline) return "\\fB" .. typed(inline.text) .. "\\fR" end,
  Strong = function(inline) return "\\fB" .. inlines(inline.content) .. "\\fR" end,
  Emph = function(inline) return "\\fI" .. inlines(inline.content) .. "\\fR" end,
  Link = function(inline) return inlines(inline.content) end,
  Quoted = function(inline)
    local marks = inline.quotetype == "SingleQuote" and {"\\(oq", "\\(cq"} or {"\\(lq", "\\(rq"}
    return marks[1] .. inlines(inline.content) .. marks[2]
  end,
}

function inlines(list)
  local written = {}
  for _, inline in ipairs(list) do
    local write = Inline[inline.tag] or error("no way to write the inline " .. inline.tag)
    written[#written + 1] = write(inline)
  end
  return table.concat(written)
end

local blocks

-- The macro that begins a paragraph; none directly behind what begins something larger.
local function paragraph(out, context)
  if not context.is_begin then
    out[#out + 1] = ".PP"
  end
  context.is_begin = false
end

local function list(tag_of)
  return function(block, out, context)
    for number, content in ipairs(block.content) do
      out[#out + 1] = ".IP " .. tag_of(number) .. " 4"
      blocks(content, out, {is_begin = true})
    end
    context.is_begin = false
  end
end

-- Ends what is indented below a heading.
local function outdent(out, context)
  if context.is_indented then
    out[#out + 1] = ".RE"
  end
  context.is_indented = false
end

-- A tag is one line of the source, unless it stands above what it belongs to.
local function tagged(out, tag, text)
  if #tag <= LongestLine then
    out[#out + 1] = ".TP\n" .. (tag == "" and "\\&" or as_text(tag)) .. "\n" .. text
  else
    out[#out + 1] = ".PP\n" .. fill(tag) .. "\n.RS 7\n" .. text .. "\n.RE"
  end
end

local function cell_text(cell)
  return inlines(pandoc.utils.blocks_to_inlines(cell))
end

local Block = {
  Para = function(block, out, context)
    paragraph(out, context)
    out[#out + 1] = fill(inlines(block.content))
  end,
  CodeBlock = function(block, out, context)
    paragraph(out, context)
    out[#out + 1] = ".RS 4\n.nf"
    for line in (block.text .. "\n"):gmatch("(.-)\n") do
      out[#out + 1] = as_text(typed(line))
    end
    out[#out + 1] = ".fi\n.RE"
  end,
  BlockQuote = function(block, out, context)
    paragraph(out, context)
    out[#out + 1] = ".RS 4"
    blocks(block.content, out, {is_begin = true})
    out[#out + 1] = ".RE"
  end,
  BulletList = list(function() return "\\(bu" end),
  OrderedList = list(function(number) return number .. "." end),
  Table = function(block, out, context)
    local simple = pandoc.utils.to_simple_table(block)
    for _, row in ipairs(simple.rows) do
      local cells = {}
      for column = 2, #row do
        local heading = #row > 2 and cell_text(simple.headers[column]) or ""
        local text = cell_text(row[column])
        if text ~= "" then
          cells[#cells + 1] = fill((heading ~= "" and heading .. ": " or "") .. text)
        end
      end
      tagged(out, cell_text(row[1]), table.concat(cells, "\n.br\n"))
    end
    context.is_begin = false
  end,
  Header = function(block, out, context)
    outdent(out, context)
    local text = inlines(block.content)
    if block.level == 2 then
      out[#out + 1] = ".SS " .. text
    else
      paragraph(out, context)
      out[#out + 1] = fill(text) .. "\n.RS 7"
      context.is_indented = true
    end
    context.is_begin = true
  end,
}
Block.Plain = Block.Para

function blocks(list, out, context)
  for _, block in ipairs(list) do
    local write = Block[block.tag] or error("no way to write the block " .. block.tag)
    write(block, out, context)
  end
end

-- The sections in their order, each with its name and its text.
local function sections_of(document, name)
  local sections = {}
  for _, block in ipairs(document.blocks) do
    if block.tag == "Header" and block.level == 1 then
      local title = pandoc.utils.stringify(block)
      sections[#sections + 1] = {name = title == name and "DESCRIPTION" or title:upper(), blocks = {}}
    else
      table.insert(sections[#sections].blocks, block)
    end
  end
  return sections
end

local function place_of(section)
  for place, name in ipairs(FirstSections) do
    if section.name == name then return place - #FirstSections - 1 end
  end
  for place, name in ipairs(LastSections) do
    if section.name == name then return place end
  end
  return 0
end

local function in_order(sections)
  for index, section in ipairs(sections) do
    section.index, section.place = index, place_of(section)
  end
  table.sort(sections, function(one, other)
    return one.place < other.place or (one.place == other.place and one.index < other.index)
  end)
  return sections
end

function Pandoc(document)
  local meta = {}
  for _, key in ipairs({"name", "summary", "version", "date"}) do
    meta[key] = pandoc.utils.stringify(document.meta[key])
  end
  local out = {
    string.format('.TH %s 1 "%s" "%s %s"', meta.name:upper(), meta.date, meta.name, meta.version),
    '.nh\n.ad l\n.SH NAME\n' .. meta.name .. " \\- " .. meta.summary,
  }
  for _, section in ipairs(in_order(sections_of(document, meta.name))) do
    if not pandoc.List(SectionsLeftOut):includes(section.name) then
      out[#out + 1] = ".SH " .. section.name
      local context = {is_begin = true}
      blocks(section.blocks, out, context)
      outdent(out, context)
    end
  end
  return pandoc.Pandoc({pandoc.RawBlock("man", table.concat(out, "\n"))})
end
