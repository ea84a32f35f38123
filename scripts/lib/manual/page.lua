-- A filter for pandoc: a link to another page of the manual leads to the rendered one; a link to a file that is not
-- rendered is its text. The current folder is that of the pages.
local Rendered = {["README.md"] = "index.html", ["tavrohost.md"] = "tavrohost.html", ["linux.md"] = "linux.html"}

local function rendered(file)
  local page = io.open(file)
  if page then page:close() end
  return Rendered[file] or (page and file:match("^%l+%.md$") and file:gsub("%.md$", ".html")) or nil
end

function Link(link)
  if link.target:find("^%a+:") or link.target:find("^#") then
    return link
  end
  local file, place = link.target:match("^([^#]*)(.*)$")
  local page = rendered((file:gsub("^manual/", ""):gsub("^%.%./", "")))
  if not page then
    return link.content
  end
  link.target = page .. place
  return link
end
