"use strict";

// Shows the pages of the kinds that are ticked. All pages are there without it.
const filter = document.getElementById("filter");
const boxes = Array.from(filter.querySelectorAll("input[value]"));
const unstable = document.getElementById("unstable");
const pages = Array.from(document.querySelectorAll("section.page"));
const count = document.getElementById("shown");

function isWanted(page, kinds) {
    const isOfKind = kinds.some((kind) => page.classList.contains(kind));
    return isOfKind && (!unstable?.checked || page.querySelector(".again .changes") !== null);
}

function showWanted() {
    const kinds = boxes.filter((box) => box.checked).map((box) => box.value);
    let shown = 0;
    for (const page of pages) {
        page.hidden = !isWanted(page, kinds);
        shown += page.hidden ? 0 : 1;
    }
    count.textContent = `${shown} of ${pages.length} shown`;
}

filter.addEventListener("change", showWanted);
// A link to a page that is not shown shows it, before the browser jumps there.
addEventListener("click", (event) => {
    const target = document.getElementById(event.target.closest("a[href^='#']")?.hash.slice(1));
    if (target) {
        target.hidden = false;
    }
});
filter.hidden = false;
showWanted();
