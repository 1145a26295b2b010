-- The books lie beside each other where they are read: a link to one that is packed leads to its page, one into
-- the sources becomes its text.
local packed = { ["messages.md"] = "messages.html", ["Handbuch.md"] = "Handbuch.html" }

function Link(link)
  if link.target:match("^#") or link.target:match("^%a+://") then
    return link
  end
  local file, place = link.target:match("^([^#]*)(.*)$")
  if packed[file] then
    link.target = packed[file] .. place
    return link
  end
  return link.content
end
