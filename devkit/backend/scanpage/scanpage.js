// Shows what the dev backend tells by server-sent events, and presses buttons for the player.
// Everything that comes from elsewhere is put into the page as text, never as markup.
"use strict";

const byId = (id) => document.getElementById(id);
const fromTemplate = (id) => byId(id).content.firstElementChild.cloneNode(true);
const items = new Map(); // the items on the page, by "<list> <key>"

// Brings a list up to date and leaves what has not changed alone: focus and half-typed numbers stay.
function showList(list, entries, key, make, update) {
  const wanted = new Map(entries.map((entry) => [`${list.id} ${entry[key]}`, entry]));
  for (const [name, item] of items) {
    if (item.parentNode === list && !wanted.has(name)) {
      item.remove();
      items.delete(name);
    }
  }
  let before = list.firstElementChild;
  for (const [name, entry] of wanted) {
    let item = items.get(name);
    if (!item) {
      item = make(entry);
      items.set(name, item);
    }
    if (item === before) {
      before = item.nextElementSibling;
    } else {
      list.insertBefore(item, before);
    }
    update(item, entry);
  }
}

function ageOf(createdMs) {
  const seconds = Math.max(0, Math.round((Date.now() - createdMs) / 1000));
  return seconds < 60 ? `${seconds} s` : `${Math.floor(seconds / 60)} min ${seconds % 60} s`;
}

function showMessage(text) {
  byId("message").hidden = text === "";
  byId("message").textContent = text;
}

async function press(id, button, item) {
  const word = { button };
  if (button === "fail") {
    word.code = Number(item.querySelector("input").value);
  }
  try {
    const answer = await fetch(`sessions/${encodeURIComponent(id)}/press`, {
      method: "POST",
      headers: { "Content-Type": "application/json" },
      body: JSON.stringify(word),
    });
    showMessage(answer.ok ? "" : (await answer.json()).error);
  } catch {
    showMessage("The dev backend does not answer.");
  }
}

function makeSession(session) {
  const item = fromTemplate("session-template");
  const title = item.querySelector("h3");
  title.id = `session-${session.id}`;
  title.textContent = `${session.channel} ${session.id}`;
  item.setAttribute("aria-labelledby", title.id);
  const image = item.querySelector("img");
  image.src = `qr/${encodeURIComponent(session.id)}.png`;
  image.alt = `QR code: ${session.qrcode}`;
  item.dataset.created = session.created_ms;
  item.querySelector(".seq").textContent = session.seq || "not known";
  item.querySelector(".address").textContent = session.qrcode;
  for (const button of item.querySelectorAll("button")) {
    button.addEventListener("click", () => press(session.id, button.dataset.button, item));
  }
  item.querySelector("input").addEventListener("keydown", (event) => {
    if (event.key === "Enter") {
      item.querySelector("[data-button=fail]").click();
    }
  });
  return item;
}

function updateSession(item, session) {
  item.querySelector(".state").textContent = session.state;
  item.querySelector(".age").textContent = ageOf(session.created_ms);
  for (const button of item.querySelectorAll("button")) {
    button.disabled = !session.buttons.includes(button.dataset.button);
  }
}

function showSessions(sessions) {
  const newestFirst = sessions.slice().reverse();
  const live = newestFirst.filter((session) => session.live);
  const over = newestFirst.filter((session) => !session.live);
  showList(byId("sessions"), live, "id", makeSession, updateSession);
  showList(byId("over-sessions"), over, "id", () => document.createElement("li"),
    (item, session) => {
      const seq = session.seq ? `, sequence id ${session.seq}` : "";
      item.textContent = `${session.channel} ${session.id}: ${session.state}${seq}`;
    });
  byId("no-sessions").hidden = live.length > 0;
  byId("over").hidden = over.length === 0;
  byId("session-count").textContent = live.length;
  byId("over-count").textContent = over.length;
}

function makeRequest(request) {
  const item = fromTemplate("request-template");
  const time = item.querySelector("time");
  time.dateTime = new Date(request.received_ms).toISOString();
  time.textContent = new Date(request.received_ms).toLocaleTimeString();
  item.querySelector(".what").textContent = `${request.method} ${request.path}`;
  for (const name of ["signature", "time", "content"]) {
    const finding = document.createElement("span");
    finding.className = "finding";
    finding.dataset.finding = request[name];
    const word = { ok: "✓", bad: "✗ wrong" }[request[name]] || "– not checked";
    finding.textContent = `${name === "content" ? "body" : name} ${word}`;
    item.querySelector(".findings").append(finding);
  }
  const answer = request.status === 0 ? "no answer" : `HTTP ${request.status}`;
  item.querySelector(".answer").textContent =
    request.answered === "scripted" ? `${answer}, scripted` : answer;
  const verdict = item.querySelector(".verdict");
  verdict.hidden = request.verdict === "ok";
  verdict.textContent = request.verdict;
  item.querySelector(".query").textContent = request.query;
  item.querySelector(".body").textContent = request.body;
  return item;
}

function showRequests(requests) {
  for (const request of requests) {
    request.key = `${request.number} ${request.received_ms}`; // a new backend counts from 1 again
  }
  showList(byId("requests"), requests.slice().reverse(), "key", makeRequest, () => {});
  byId("no-requests").hidden = requests.length > 0;
  byId("request-count").textContent = requests.length;
}

function showConnection(state, text) {
  byId("connection").dataset.state = state;
  byId("connection").textContent = text;
}

const events = new EventSource("events");
events.addEventListener("open", () => showConnection("on", "Live"));
events.addEventListener("error", () => {
  showConnection("off", "Not connected: the dev backend has ended or is busy");
  if (events.readyState === EventSource.CLOSED) {
    setTimeout(() => location.reload(), 3000); // refused: it does not try again by itself
  }
});
events.addEventListener("sessions", (event) => showSessions(JSON.parse(event.data)));
events.addEventListener("requests", (event) => showRequests(JSON.parse(event.data)));

setInterval(() => {
  for (const item of document.querySelectorAll(".session")) {
    item.querySelector(".age").textContent = ageOf(Number(item.dataset.created));
  }
}, 1000);
