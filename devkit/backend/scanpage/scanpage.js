// Shows what the dev backend tells by server-sent events, and presses buttons for the player.
// Everything that comes from elsewhere is put into the page as text, never as markup.
"use strict";

const byId = (id) => document.getElementById(id);
const fromTemplate = (id) => byId(id).content.firstElementChild.cloneNode(true);
const items = new Map(); // the items on the page, by "<list> <key>"

function setText(element, text) {
  if (element.textContent !== text) {
    element.textContent = text;
  }
}

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
  setText(byId("message"), text);
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
  setText(title, `${session.channel} ${session.id}`);
  item.setAttribute("aria-labelledby", title.id);
  const image = item.querySelector("img");
  image.src = `sessions/${encodeURIComponent(session.id)}/qr.svg`;
  image.alt = `QR code: ${session.qrcode}`;
  item.dataset.created = session.created_ms;
  setText(item.querySelector(".seq"), session.seq || "not known");
  setText(item.querySelector(".address"), session.qrcode);
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
  setText(item.querySelector(".state"), session.state);
  setText(item.querySelector(".age"), ageOf(session.created_ms));
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
    (item, session) => setText(item, `${session.channel} ${session.id}: ${session.state}` +
      (session.seq ? `, sequence id ${session.seq}` : "")));
  byId("no-sessions").hidden = live.length > 0;
  byId("over").hidden = over.length === 0;
  setText(byId("session-count"), String(live.length));
  setText(byId("over-count"), String(over.length));
}

function makeRequest(request) {
  const item = fromTemplate("request-template");
  const time = item.querySelector("time");
  time.dateTime = new Date(request.received_ms).toISOString();
  setText(time, new Date(request.received_ms).toLocaleTimeString());
  setText(item.querySelector(".what"), `${request.method} ${request.path}`);
  for (const name of ["signature", "time", "content"]) {
    const finding = document.createElement("span");
    finding.className = "finding";
    finding.dataset.finding = request[name];
    const word = { ok: "✓", bad: "✗ wrong" }[request[name]] || "– not checked";
    finding.textContent = `${name === "content" ? "body" : name} ${word}`;
    item.querySelector(".findings").append(finding);
  }
  setText(item.querySelector(".answer"), (request.status === 0 ? "no answer" : `HTTP ${request.status}`) +
    (request.scripted ? ", scripted" : ""));
  const verdict = item.querySelector(".verdict");
  verdict.hidden = request.verdict === "ok";
  setText(verdict, request.verdict);
  setText(item.querySelector(".query"), request.query);
  setText(item.querySelector(".body"), request.body);
  return item;
}

function showRequests(requests) {
  for (const request of requests) {
    request.key = `${request.number} ${request.received_ms}`; // a new backend counts from 1 again
  }
  showList(byId("requests"), requests.slice().reverse(), "key", makeRequest, () => {});
  byId("no-requests").hidden = requests.length > 0;
  setText(byId("request-count"), String(requests.length));
}

function showConnection(state, text) {
  byId("connection").dataset.state = state;
  setText(byId("connection"), text);
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
    setText(item.querySelector(".age"), ageOf(Number(item.dataset.created)));
  }
}, 1000);
