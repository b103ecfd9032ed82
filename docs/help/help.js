"use strict";

// Every page and section: title, address, and the page that a section is on.
const titles = [
  ["KxUI Workbench help", "index.html"],
  ["The panels", "index.html#panels", "KxUI Workbench help"],
  ["How to get help", "index.html#this-help", "KxUI Workbench help"],
  ["Getting started", "index.html#start", "KxUI Workbench help"],
  ["Sequence list", "sequence-list.html"],
  ["Opening a sequence", "sequence-list.html#open-sequence", "Sequence list"],
  ["Going to another folder", "sequence-list.html#folders", "Sequence list"],
  ["What the columns say", "sequence-list.html#columns", "Sequence list"],
  ["Paths of other machines", "sequence-list.html#mappings", "Sequence list"],
  ["Finding a line", "sequence-list.html#find", "Sequence list"],
  ["Files that have changed", "sequence-list.html#reload", "Sequence list"],
  ["Viewer", "viewer.html"],
  ["The picture", "viewer.html#picture", "Viewer"],
  ["Missing and unreadable frames", "viewer.html#missing", "Viewer"],
  ["Dark and light", "viewer.html#theme", "Viewer"],
  ["Timeline", "timeline.html"],
  ["Scrubbing", "timeline.html#scrub", "Timeline"],
  ["Zooming and panning", "timeline.html#zoom", "Timeline"],
  ["Marks", "timeline.html#marks", "Timeline"],
  ["Decoded and missing frames", "timeline.html#bars", "Timeline"],
  ["Transport controls", "transport.html"],
  ["Try it", "transport.html#try", "Transport controls"],
  ["Playing", "transport.html#play", "Transport controls"],
  ["Stepping and jumping", "transport.html#jump", "Transport controls"],
  ["Typing a time", "transport.html#type", "Transport controls"],
  ["How times are written", "transport.html#notation", "Transport controls"],
  ["Grading", "grading.html"],
  ["Gain", "grading.html#gain", "Grading"],
  ["Balance", "grading.html#balance", "Grading"],
  ["Exposure", "grading.html#exposure", "Grading"],
  ["Curves", "grading.html#curves", "Grading"],
  ["YCbCr preview", "grading.html#preview", "Grading"],
  ["Colour", "grading.html#colour", "Grading"],
  ["Bypass and reset", "grading.html#bypass", "Grading"],
  ["History", "grading.html#history", "Grading"],
  ["Scopes and statistics", "scopes.html"],
  ["Scopes", "scopes.html#scopes", "Scopes and statistics"],
  ["File or screen", "scopes.html#values", "Scopes and statistics"],
  ["A region of the picture", "scopes.html#region", "Scopes and statistics"],
  ["Scopes and the viewer", "scopes.html#viewer", "Scopes and statistics"],
  ["Holding a result", "scopes.html#hold", "Scopes and statistics"],
  ["Statistics", "scopes.html#statistics", "Scopes and statistics"],
  ["Workspace", "workspace.html"],
  ["Layouts", "workspace.html#layouts", "Workspace"],
  ["Moving panels with the mouse", "workspace.html#drag", "Workspace"],
  ["Moving panels with the keyboard", "workspace.html#keys", "Workspace"],
  ["Keeping an arrangement", "workspace.html#keep", "Workspace"],
  ["Profiler", "profiler.html"],
  ["Capturing", "profiler.html#capture", "Profiler"],
  ["What the tracks say", "profiler.html#tracks", "Profiler"],
  ["Looking around", "profiler.html#look", "Profiler"],
  ["Saving and exporting", "profiler.html#keep", "Profiler"],
  ["Render times", "render-times.html"],
  ["Recording", "render-times.html#record", "Render times"],
  ["The charts", "render-times.html#charts", "Render times"],
  ["Looking closer", "render-times.html#look-closer", "Render times"],
  ["Export", "export.html"],
  ["Exporting a sequence", "export.html#begin", "Export"],
  ["What is in the files", "export.html#formats", "Export"],
  ["While it goes on", "export.html#while", "Export"],
  ["When a file cannot be written", "export.html#errors", "Export"],
  ["Tasks", "progress.html"],
  ["In the status bar", "progress.html#strip", "Tasks"],
  ["The dialog", "progress.html#dialog", "Tasks"],
  ["Closing the window", "progress.html#close", "Tasks"],
];

function matches(words) {
  const wanted = words.toLowerCase().split(/\s+/).filter(Boolean);
  if (!wanted.length) return [];
  return titles.filter(([title, , page]) => {
    const text = (title + " " + (page || "")).toLowerCase();
    return wanted.every((word) => text.includes(word));
  });
}

function makeSearch(place) {
  const field = document.createElement("input");
  field.type = "search";
  field.placeholder = "Search titles";
  field.setAttribute("aria-label", "Search titles");
  const list = document.createElement("ul");
  list.hidden = true;
  field.addEventListener("input", () => {
    list.replaceChildren(...matches(field.value).map(([title, address, page]) => {
      const item = document.createElement("li");
      const link = document.createElement("a");
      link.href = address;
      link.textContent = title;
      link.addEventListener("click", () => { list.hidden = true; });
      item.append(link);
      if (page) {
        const where = document.createElement("small");
        where.textContent = page;
        item.append(where);
      }
      return item;
    }));
    if (field.value.trim() && !list.childElementCount) {
      const item = document.createElement("li");
      item.textContent = "No title has these words.";
      list.append(item);
    }
    list.hidden = !list.childElementCount;
  });
  field.addEventListener("keydown", (event) => {
    const first = list.querySelector("a");
    if (event.key === "Enter" && first) first.click();
    if (event.key === "Escape") list.hidden = true;
  });
  place.append(field, list);
}

// A button with data-command tells it to the workbench that serves the page.
function makeButton(button, answer) {
  if (!location.protocol.startsWith("http")) {
    button.disabled = true;
    answer.textContent = "The buttons work on pages that the workbench opened.";
    return;
  }
  button.addEventListener("click", async () => {
    answer.textContent = "";
    try {
      const response = await fetch("/" + button.dataset.command, { method: "POST" });
      answer.textContent = response.ok ? "Done: look at the workbench." : "The workbench declined.";
    } catch (error) {
      answer.textContent = "The workbench does not answer. Is it still open?";
    }
  });
}

document.querySelectorAll(".search").forEach(makeSearch);
document.querySelectorAll("button[data-command]").forEach((button) => {
  makeButton(button, document.getElementById(button.getAttribute("aria-describedby")));
});
