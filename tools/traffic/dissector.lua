-- Shows what passes between a transport unit and its management processes, in Wireshark and tshark. `trsctl dissector`
-- writes this file behind tables that it makes from the program's own constants and catalogue:
--     wire              texts and sizes of the format: greeting, full, refusal, refusalSize, lengthSize, headSize,
--                       greatestReason, greatestMessage
--     kinds, statuses   names by code
--     types             by number: {kind, name, element, count, fields, enumerators}
--     operations        by class identifier and index: {name, result, {parameter, type, isIn}...}

local trsman = Proto("trsman", "Transport unit management")
local f = {
    kind = ProtoField.string("trsman.kind", "Kind"),
    number = ProtoField.uint32("trsman.number", "Number"),
    status = ProtoField.string("trsman.status", "Status"),
    object = ProtoField.string("trsman.object", "Object"),
    operation = ProtoField.string("trsman.operation", "Operation"),
    reason = ProtoField.string("trsman.reason", "Reason"),
    value = ProtoField.string("trsman.value", "Value"),
    wrong = ProtoField.string("trsman.wrong", "Wrong"),
}
trsman.fields = f

local requests = {} -- that wait for an answer: by connection and number
local answered = {} -- what an answer answers: by frame and place in it
function trsman.init()
    requests, answered = {}, {}
end

-- Reads a message from its beginning to its end; what is missing raises the error "short".
local Reader = {}
Reader.__index = Reader

function Reader.take(self, size)
    if self.at + size > self.tvb:len() then
        error("short", 0)
    end
    local range = self.tvb(self.at, size)
    self.at = self.at + size
    return range
end

function Reader.text(self)
    local length = self:take(4):uint()
    return length > 0 and self:take(length):string() or ""
end

local function joined(parts, format, separator)
    local texts = {}
    for i, part in ipairs(parts) do
        texts[i] = string.format(format, part)
    end
    return table.concat(texts, separator)
end

-- The value as people write it, of a type that has no parts of its own.
local scalars = {
    boolean = function(self) return self:take(4):uint() ~= 0 and "true" or "false" end,
    octet = function(self) return tostring(self:take(1):uint()) end,
    int16 = function(self) return tostring(self:take(2):int()) end,
    unsigned16 = function(self) return tostring(self:take(2):uint()) end,
    int32 = function(self) return tostring(self:take(4):int()) end,
    unsigned32 = function(self) return tostring(self:take(4):uint()) end,
    text = Reader.text,
    enumeration = function(self, type)
        local value = self:take(4):int()
        return type[6][value] or tostring(value)
    end,
    object = function(self, type)
        self:take(4)
        local id = self:text()
        return id == "" and "none" or type[2]:gsub("Client$", "") .. ":" .. id
    end,
    status = function(self)
        self:take(4)
        return self:take(4):uint() == 0 and "done" or "refused"
    end,
}

-- Four octets, or six, that travel as 16-bit integers.
function Reader.address(self, type)
    if types[type[3]][1] ~= "int16" or (type[4] ~= 4 and type[4] ~= 6) or self.at + 2 * type[4] > self.tvb:len() then
        return nil
    end
    local parts = {}
    for i = 1, type[4] do
        parts[i] = self.tvb(self.at + 2 * (i - 1), 2):int()
        if parts[i] < 0 or parts[i] > 255 then
            return nil
        end
    end
    self:take(2 * type[4])
    return type[4] == 4 and joined(parts, "%d", ".") or joined(parts, "%02x", ":")
end

-- Adds the parts of a value, each with its path.
function Reader.add(self, tree, path, type)
    local begin = self.at
    local scalar = scalars[type[1]]
    local text = scalar and scalar(self, type) or type[1] == "array" and self:address(type) or nil
    if text then
        tree:add(f.value, self.tvb(begin, self.at - begin), path .. "=" .. text)
    elseif type[1] == "record" then
        for _, field in ipairs(type[5]) do
            self:add(tree, path .. "." .. field[1], types[field[2]])
        end
    else
        local count = type[1] == "array" and type[4] or self:take(4):uint()
        for i = 0, count - 1 do
            self:add(tree, path .. "[" .. i .. "]", types[type[3]])
        end
        if count == 0 then
            tree:add(f.value, self.tvb(begin, self.at - begin), path .. "=[]")
        end
    end
    return text
end

function Reader.arguments(self, tree, path, operation, areIn)
    for i = 3, #operation do
        local parameter = operation[i]
        if parameter[3] == areIn then
            self:add(tree, path .. "." .. parameter[1], types[parameter[2]])
        end
    end
end

function Reader.results(self, tree, operation, shown)
    local result = types[operation[2]]
    if result then
        local text = self:add(tree, "result", result)
        shown.status = result[1] == "status" and text or shown.status
    end
    self:arguments(tree, "results", operation, false)
end

-- What observers are told: each value with its length.
function Reader.parameters(self, tree, operation)
    local told = {}
    if types[operation[2]] then
        told[1] = { "result", operation[2] }
    end
    for i = 3, #operation do
        told[#told + 1] = operation[i]
    end
    local count = self:take(4):uint()
    for i = 1, count do
        local length = self:take(4):uint()
        local next = self.at + length
        if told[i] and length > 0 then
            self:add(tree, "parameters." .. told[i][1], types[told[i][2]])
        end
        self.at = next
    end
end

local function connectionOf(pinfo)
    local from = tostring(pinfo.src) .. " " .. pinfo.src_port
    local to = tostring(pinfo.dst) .. " " .. pinfo.dst_port
    return from < to and from .. " " .. to or to .. " " .. from
end

local function readMessage(self, pinfo, tree, shown, place)
    self:take(wire.lengthSize)
    local kindByte = self:take(1)
    local status = statuses[self:take(1):uint()] or "unknown"
    self:take(2)
    local number = self:take(4)
    local kind = kinds[kindByte:uint()] or "malformed"
    shown.kind = kind
    tree:add(f.kind, kindByte, kind)
    tree:add(f.number, number)
    local waiting = connectionOf(pinfo) .. " " .. number:uint()
    local isAnswer = kind == "reply" or kind == "locate reply" or kind == "subscription reply"
    local request
    if isAnswer then
        shown.status = status
        if not pinfo.visited then
            answered[place] = requests[waiting]
            requests[waiting] = nil
        end
        request = answered[place]
    else
        local class, index = self:take(4):uint(), self:take(4):uint()
        self:take(4)
        request = { object = self:text(), operation = operations[class] and operations[class][index] }
        request.name = request.operation and request.operation[1] or string.format("0x%08x.%d", class, index)
        if kind == "locate" then
            request.name = nil
        end
        if number:uint() ~= 0 and not pinfo.visited then
            requests[waiting] = request
        end
    end
    if request then
        shown.object, shown.operation = request.object, request.name
        local operation = request.operation
        if operation and kind == "request" then
            self:arguments(tree, "arguments", operation, true)
        elseif operation and kind == "reply" and status == "done" then
            self:results(tree, operation, shown)
        elseif operation and kind == "notification" then
            self:parameters(tree, operation)
        else
            self.at = self.tvb:len()
        end
    else
        error("nobody asked for it", 0)
    end
    if self.at ~= self.tvb:len() then
        error("too long", 0)
    end
end

-- Whatever its version.
local function isGreeting(tvb)
    return tvb:len() >= #wire.greeting and tvb:raw(0, 4) == wire.greeting:sub(1, 4)
end

-- The length of a greeting, as far as it is known; one that refuses tells why.
local function greetingLength(tvb)
    if tvb:raw(0, #wire.greeting) ~= wire.refusal then
        return #wire.greeting
    end
    local reason = tvb:len() < wire.refusalSize and 0 or tvb(#wire.greeting, 4):uint()
    return reason <= wire.greatestReason and wire.refusalSize + reason or #wire.greeting
end

local function showGreeting(tvb, tree, shown)
    local begin = tvb:raw(0, #wire.greeting)
    shown.kind = "greeting"
    tree:add(f.kind, tvb(0, #wire.greeting), shown.kind)
    shown.status = begin == wire.full and "full" or begin == wire.refusal and "refused" or nil
    if shown.status then
        tree:add(f.status, tvb(0, #wire.greeting), shown.status)
    end
    if tvb:len() > wire.refusalSize then
        shown.reason = tvb(wire.refusalSize):string()
        tree:add(f.reason, tvb(wire.refusalSize), shown.reason)
    end
end

local wrongs = { short = "it ends too early", ["too long"] = "it is too long" }

local function showMessage(tvb, pinfo, tree, place)
    local subtree = tree:add(trsman, tvb())
    local shown = {}
    if isGreeting(tvb) then
        showGreeting(tvb, subtree, shown)
    elseif tvb:len() < wire.headSize then
        shown.kind = "malformed"
        subtree:add(f.kind, tvb(), shown.kind)
    else
        local isGood, wrong = pcall(readMessage, setmetatable({ tvb = tvb, at = 0 }, Reader), pinfo, subtree, shown, place)
        for _, name in ipairs({ "object", "operation", "status" }) do
            if shown[name] then
                subtree:add(f[name], tvb(), shown[name]):set_generated()
            end
        end
        if not isGood then
            shown.wrong = wrongs[wrong] or wrong
            subtree:add(f.wrong, tvb(), shown.wrong):set_generated()
            subtree:add_expert_info(PI_MALFORMED, PI_ERROR, shown.wrong)
        end
    end
    local words = {}
    for _, name in ipairs({ "kind", "object", "operation", "status", "reason", "wrong" }) do
        words[#words + 1] = shown[name]
    end
    pinfo.cols.protocol = "TRSMAN"
    pinfo.cols.info = table.concat(words, " ")
    subtree:append_text(", " .. table.concat(words, " "))
end

-- A stream may have a part of a message, or several.
function trsman.dissector(tvb, pinfo, tree)
    local at = 0
    while at < tvb:len() do
        local rest = tvb:len() - at
        local isShort = rest < wire.lengthSize
        local length = rest
        if isGreeting(tvb(at):tvb()) then
            length = greetingLength(tvb(at):tvb())
        elseif not isShort then
            length = tvb(at, wire.lengthSize):uint() + wire.lengthSize
            if length < wire.headSize or length > wire.greatestMessage then
                length = rest
            end
        end
        if (isShort or length > rest) and pinfo.can_desegment > 0 then
            pinfo.desegment_offset = at
            pinfo.desegment_len = isShort and DESEGMENT_ONE_MORE_SEGMENT or length - rest
            return
        end
        length = math.min(length, rest)
        showMessage(tvb(at, length):tvb(), pinfo, tree, pinfo.number .. " " .. at)
        at = at + length
    end
    return at
end

trsman:register_heuristic("tcp", function(tvb, pinfo, tree)
    if not isGreeting(tvb) then
        return false
    end
    pinfo.conversation = trsman
    trsman.dissector(tvb, pinfo, tree)
    return true
end)
DissectorTable.get("tcp.port"):add_for_decode_as(trsman)
