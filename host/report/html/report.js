"use strict";

// Shows the pages of the kinds that are ticked. All pages are there without it.
const filter = document.getElementById("filter");
const boxes = Array.from(filter.querySelectorAll("input"));
const pages = Array.from(document.querySelectorAll("section.page"));
const count = document.getElementById("shown");

function showWanted() {
    const wanted = boxes.filter((box) => box.checked).map((box) => box.value);
    let shown = 0;
    for (const page of pages) {
        page.hidden = !wanted.some((kind) => page.classList.contains(kind));
        shown += page.hidden ? 0 : 1;
    }
    count.textContent = `${shown} of ${pages.length} shown`;
}

filter.addEventListener("change", showWanted);
filter.hidden = false;
showWanted();
